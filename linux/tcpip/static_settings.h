#pragma once

#include <optional>

#include "library/calls/outcome.h"
#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"

namespace tavrolinux {

// What one family of an interface is to have.
struct StaticSettings {
    IpAddress address;  // all zeros for none
    std::uint32_t prefixLength = 0;
    IpAddress gateway;  // all zeros for none
};

// Shows the address in the place of the one that the read-out shows, and the gateway in the place
// of that which it shows. An address that the interface has already is shown, and none goes for it.
// Other addresses stay as they are, behind it; the routes of all tables stay, those that prefer the
// replaced address as the source with the new one.
//
// Refused is a change for which a route would be lost, or that would replace one of several next
// hops. When the change is refused, or the kernel fails a step, what was there before is put back.
// Where even that fails, the refusal's details or the reason of the SystemFailure that is thrown
// say so.
tavrolib::Outcome ApplyStaticSettings(Socket& route, const Link& link,
                                      const StaticSettings& wanted);

}  // namespace tavrolinux
