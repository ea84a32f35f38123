#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "linux/netlink/addresses.h"

// The packets of a ping.
namespace tavrolinux {

// What tells one packet of a ping from every other.
struct EchoMark {
    std::uint16_t identifier = 0;
    std::uint16_t sequence = 0;

    bool operator==(const EchoMark&) const = default;
};

// A packet that asks for a reply, with `size` bytes behind its header. The checksum of IPv6 is left
// to the kernel, which knows the addresses that it covers.
std::vector<std::uint8_t> EchoRequest(Family family, EchoMark mark, std::size_t size);

// What the bytes are a reply to; nothing for every other packet.
std::optional<EchoMark> EchoReplyTo(Family family, std::span<const std::uint8_t> packet);

// Whether the packet brings back what a request has behind its header.
bool BringsBack(std::span<const std::uint8_t> packet, std::span<const std::uint8_t> request);

// The packet within one of IPv4; empty where there is none.
std::span<const std::uint8_t> WithoutIPv4Header(std::span<const std::uint8_t> packet);

}  // namespace tavrolinux
