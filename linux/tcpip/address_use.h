#pragma once

#include <chrono>
#include <span>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"

namespace tavrolinux {

// Waits until those of the addresses that the interface has can be used: one of IPv6 cannot before
// the kernel has asked around for it, which takes a second or two, and goes on for as long as the
// link has no carrier. Then, and after `patience`, it waits no longer. Returns whether another host
// has one of them. Throws SystemFailure.
bool IsOneTaken(Socket& route, const Link& link, std::span<const IpAddress> addresses,
                std::chrono::milliseconds patience);

}  // namespace tavrolinux
