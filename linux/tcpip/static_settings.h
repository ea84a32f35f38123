#pragma once

#include <optional>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"

namespace tavrolinux {

// What one family of an interface is to have.
struct StaticSettings {
    IpAddress address;  // all zeros for none
    std::uint32_t prefixLength = 0;
    IpAddress gateway;  // all zeros for none
};

// Puts the address in the place of the one that the read-out shows, and the gateway in the place of
// that which it shows; other addresses and routes stay. When the kernel refuses a step, what was
// there before is put back and SystemFailure thrown, whose reason says so where even that fails.
void ApplyStaticSettings(Socket& route, const Link& link, const StaticSettings& wanted);

}  // namespace tavrolinux
