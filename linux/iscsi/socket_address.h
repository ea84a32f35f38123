#pragma once

#include <sys/socket.h>

#include "linux/netlink/addresses.h"

namespace tavrolinux {

// An address as sockets want it, with the port 0, and its size.
struct SocketAddress {
    sockaddr_storage storage{};
    socklen_t size = 0;

    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&storage); }
};
SocketAddress SocketAddressOf(const IpAddress& address);

}  // namespace tavrolinux
