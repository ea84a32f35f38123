#include "linux/iscsi/local_address.h"

#include <netinet/in.h>

#include <algorithm>
#include <cstring>

#include "linux/iscsi/socket_address.h"
#include "linux/system/descriptor.h"

namespace tavrolinux {

SocketAddress SocketAddressOf(const IpAddress& address) {
    SocketAddress made;
    if (address.family == Family::IPv4) {
        sockaddr_in in{};
        in.sin_family = AF_INET;
        std::memcpy(&in.sin_addr, address.octets.data(), sizeof in.sin_addr);
        std::memcpy(&made.storage, &in, sizeof in);
        made.size = sizeof in;
    } else {
        sockaddr_in6 in{};
        in.sin6_family = AF_INET6;
        std::memcpy(&in.sin6_addr, address.octets.data(), sizeof in.sin6_addr);
        std::memcpy(&made.storage, &in, sizeof in);
        made.size = sizeof in;
    }
    return made;
}

// A socket can have no other addresses than the host's own.
bool IsAddressOfThisHost(std::string_view address) {
    const auto parsed = IpAddressFrom(address);
    if (!parsed || parsed->IsZero()) {
        return false;
    }
    const SocketAddress local = SocketAddressOf(*parsed);
    const Descriptor socket(::socket(local.storage.ss_family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    return socket && bind(socket.Get(), local.Get(), local.size) == 0;
}

}  // namespace tavrolinux
