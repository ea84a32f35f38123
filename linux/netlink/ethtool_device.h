#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "linux/netlink/ethtool.h"

// What an Ethernet device can do by itself, how much of it there is, and what it counts.
namespace tavrolinux {

// The names of the driver and of what runs on the device.
struct DriverInformation {
    std::string name;
    std::string version;
    std::string firmware;
    std::string optionRom;
    std::string bus;  // where the device is found: "0000:03:00.0"
};

// By the call that netlink has none for. Nothing where the driver tells nothing.
std::optional<DriverInformation> ReadDriverInformation(const Link& link);

// Something that a device can do by itself, or that the kernel does for it.
struct Feature {
    bool isActive = false;
    bool isWanted = false;  // asked for, though something else may keep it from being active
    bool canChange = false;
};
using Features = std::map<std::string, Feature, std::less<>>;  // by their names: "rx-checksum"

// Empty where the kernel tells none.
Features ReadFeatures(Ethtool& ethtool, const Link& link);
void WriteFeatures(Ethtool& ethtool, const Link& link, const NamedBits& wanted);

// A number of something, and how many of it there can be; 0 where the device has none.
struct Amount {
    std::uint32_t present = 0;
    std::uint32_t largest = 0;

    bool operator==(const Amount&) const = default;
};

// How many buffers a queue has.
struct Rings {
    Amount receive;
    Amount send;

    bool operator==(const Rings&) const = default;
};

std::optional<Rings> ReadRings(Ethtool& ethtool, const Link& link);
void WriteRings(Ethtool& ethtool, const Link& link, const Rings& wanted);

// How many queues there are that receive, that send, and that do both.
struct Channels {
    Amount receive;
    Amount send;
    Amount combined;

    bool operator==(const Channels&) const = default;
};

std::optional<Channels> ReadChannels(Ethtool& ethtool, const Link& link);

// Sets those that the device can have.
void WriteChannels(Ethtool& ethtool, const Link& link, const Channels& wanted);

// How long a device waits for more frames before it interrupts the host.
struct Coalescing {
    std::optional<bool> isAdaptive;             // the device chooses; nothing where it cannot
    std::optional<std::uint32_t> receiveDelay;  // in microseconds

    bool operator==(const Coalescing&) const = default;
};

std::optional<Coalescing> ReadCoalescing(Ethtool& ethtool, const Link& link);
void WriteCoalescing(Ethtool& ethtool, const Link& link, const Coalescing& wanted);

// What wakes the host ("magic", "unicast"): what the device can react to, set where it does.
// Nothing where it wakes nobody. Throws SystemFailure: reading takes a right.
std::optional<NamedBits> ReadWakeUp(Ethtool& ethtool, const Link& link);
void WriteWakeUp(Ethtool& ethtool, const Link& link, const NamedBits& wanted);

// Who can stamp frames with the time ("hardware-receive", "software-receive").
NamedBits ReadTimeStamping(Ethtool& ethtool, const Link& link);

// What the device counts, in the terms of the standards of Ethernet and of remote monitoring.
// Nothing where it does not count it.
struct DeviceCounters {
    std::optional<std::uint64_t> singleCollisions;
    std::optional<std::uint64_t> checksumErrors;
    std::optional<std::uint64_t> alignmentErrors;
    std::optional<std::uint64_t> deferred;
    std::optional<std::uint64_t> lateCollisions;
    std::optional<std::uint64_t> excessiveCollisions;
    std::optional<std::uint64_t> multicastSent;
    std::optional<std::uint64_t> multicastReceived;
    std::optional<std::uint64_t> broadcastSent;
    std::optional<std::uint64_t> broadcastReceived;
    std::optional<std::uint64_t> tooLong;
    std::optional<std::uint64_t> undersized;
    std::optional<std::uint64_t> oversized;
    std::optional<std::uint64_t> fragments;
    std::optional<std::uint64_t> jabbers;
};

DeviceCounters ReadDeviceCounters(Ethtool& ethtool, const Link& link);

// Takes what one group of them tells, as the kernel's answer has it; what is not known is left out.
void TakeCounterGroup(const nlattr& group, DeviceCounters& counters);

}  // namespace tavrolinux
