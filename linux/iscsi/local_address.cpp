#include "linux/iscsi/local_address.h"

#include <linux/rtnetlink.h>
#include <netinet/in.h>

#include <cstring>

#include "linux/iscsi/portal.h"
#include "linux/iscsi/socket_address.h"
#include "linux/netlink/socket.h"
#include "linux/system/failure.h"

namespace tavrolinux {

namespace {

// An address of IPv6 that means nothing before it is said of which link.
bool IsOfOneLink(const IpAddress& address) {
    return address.family == Family::IPv6 && address.octets[0] == 0xFE &&
           (address.octets[1] & 0xC0U) == 0x80U;
}

}  // namespace

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

// The kernel is asked what it would do with a packet. Whether a socket can have the address tells
// nothing: on a host for it (ip_nonlocal_bind), any socket can have any.
bool IsAddressOfThisHost(std::string_view address) {
    const auto wanted = PlainAddressFrom(address);
    if (!wanted || wanted->IsZero() || IsOfOneLink(*wanted)) {
        return false;
    }
    Socket route(NETLINK_ROUTE);
    Message question(RTM_GETROUTE, 0);
    rtmsg header{};
    header.rtm_family = SystemFamily(wanted->family);
    const auto octets = OctetsOf(*wanted);
    header.rtm_dst_len = static_cast<std::uint8_t>(8 * octets.size());
    question.Append(header);
    question.Put(RTA_DST, octets);
    bool isLocal = false;
    try {
        route.Request(question, "asking for the way to " + TextOf(*wanted),
                      [&isLocal](const nlmsghdr& answer) {
                          isLocal = HeaderOf<rtmsg>(answer).rtm_type == RTN_LOCAL;
                      });
    } catch (const SystemFailure&) {
        // There is no way to it.
        return false;
    }
    return isLocal;
}

}  // namespace tavrolinux
