#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "linux/netlink/addresses.h"

namespace tavrolinux {

inline constexpr std::uint16_t UsualPort = 3260;

// Where targets answer: an IP address, or a name that a target told, and a TCP port.
struct Portal {
    std::string address;
    std::uint16_t port = UsualPort;
};

// The address that the text writes; one of IPv4 in whichever of the two families it is written.
// Nothing for every other text.
std::optional<IpAddress> PlainAddressFrom(std::string_view text);

// Whether the address is one that stands for none: "0.0.0.0", "::".
bool IsNoPlace(std::string_view address);

// Whether both are one portal, in whatever way their addresses are written.
bool AreSame(const Portal& one, const Portal& other);

// The number that `text` is as a whole, 1 to 65535; nothing for every other text.
std::optional<std::uint16_t> PortFrom(std::string_view text);

// As connections and details name it: "192.0.2.1:3260", "[2001:db8::1]:3260".
std::string TextOf(const Portal& portal);

// A portal of a target, as the target told it.
struct AnnouncedPortal {
    Portal portal;
    std::string group;  // 0 to 65535; empty where the target told none
};

// Reads "192.0.2.1:3260,1" and "[2001:db8::1]:3260,1"; port and group may be missing. Nothing for
// every other text.
std::optional<AnnouncedPortal> ParseAnnouncedPortal(std::string_view text);

}  // namespace tavrolinux
