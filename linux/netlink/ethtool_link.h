#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "linux/netlink/ethtool.h"

// The link of an Ethernet device: its modes, its pausing, its connector.
namespace tavrolinux {

// How the link runs, or is to run.
struct LinkModes {
    bool negotiates = false;             // with the other end
    std::optional<std::uint32_t> speed;  // in Mbit/s; nothing where the driver tells none
    bool isFullDuplex = false;
    NamedBits modes;  // those that the device has ("10000baseT/Full", "Autoneg"), set where offered

    bool operator==(const LinkModes&) const = default;
};

// Nothing where the device has none.
std::optional<LinkModes> ReadLinkModes(Ethtool& ethtool, const Link& link);

// Sets the modes to offer where the link is negotiated, else speed and duplex. Throws
// SystemFailure.
void WriteLinkModes(Ethtool& ethtool, const Link& link, const LinkModes& wanted);

// The speed in Mbit/s of the mode of that name; nothing for a bit that is no mode of a speed.
std::optional<std::uint32_t> SpeedOfMode(std::string_view name);

// Whether the device pauses the other end, and lets itself be paused.
struct Pause {
    bool negotiates = false;  // leaves it to what both ends offer
    bool receives = false;
    bool sends = false;
    std::optional<std::uint64_t> framesReceived;  // where the driver counts them
    std::optional<std::uint64_t> framesSent;

    bool operator==(const Pause&) const = default;
};

std::optional<Pause> ReadPause(Ethtool& ethtool, const Link& link);
void WritePause(Ethtool& ethtool, const Link& link, const Pause& wanted);

// The kind of the device's connector (PORT_TP, ...); nothing where the driver tells none.
std::optional<std::uint8_t> ReadConnector(Ethtool& ethtool, const Link& link);

// Whether energy efficient Ethernet is on; nothing where the device has none.
std::optional<bool> ReadEnergyEfficiency(Ethtool& ethtool, const Link& link);

}  // namespace tavrolinux
