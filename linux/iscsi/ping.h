#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "linux/netlink/addresses.h"

// Pinging by ICMP.
namespace tavrolinux {

struct PingPlan {
    std::string interface;  // the packets leave through it, unless they stay within this host
    IpAddress address;
    std::uint32_t count = 0;
    std::uint32_t packetSize = 0;         // bytes behind the header
    std::chrono::milliseconds timeout{};  // for each reply
};

struct PingOutcome {
    std::uint32_t replies = 0;
    std::string reason;  // why a packet could not be sent, as the system puts it; else empty
};

// Sends one packet after the other, the next one when a reply has come or its time is over. A
// packet that cannot be sent has no reply. Throws SystemFailure where this process may not ping.
PingOutcome Ping(const PingPlan& plan);

}  // namespace tavrolinux
