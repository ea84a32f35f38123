#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "linux/netlink/ethtool_link.h"
#include "linux/netlink/links.h"

// What displays say of an interface's link, whichever of its functions they are about.
namespace tavrolinux {

// Whether there is a link: an interface that is not up has none, whatever its device says.
bool HasLink(const Link& link);

// "Up" or "Down".
std::string LinkStateText(const Link& link);

// "10 Gbps", "2.5 Gbps", "100 Mbps". The speed is in Mbit/s.
std::string SpeedText(std::uint32_t speed);

// The speed that the link runs at: "None" where there is no link, "Unknown" where the driver tells
// none.
std::string LinkSpeedText(const Link& link, const std::optional<LinkModes>& modes);

}  // namespace tavrolinux
