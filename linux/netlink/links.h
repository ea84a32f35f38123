#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/netlink/socket.h"

namespace tavrolinux {

using EthernetAddress = std::array<std::uint8_t, 6>;

// The standard counters of an interface, as the kernel keeps them since it was made.
struct LinkCounters {
    std::uint64_t packetsReceived = 0;
    std::uint64_t packetsSent = 0;
    std::uint64_t bytesReceived = 0;
    std::uint64_t bytesSent = 0;
    std::uint64_t receiveErrors = 0;
    std::uint64_t sendErrors = 0;
    std::uint64_t receivedDropped = 0;
    std::uint64_t sentDropped = 0;
    std::uint64_t multicastReceived = 0;
    std::uint64_t collisions = 0;
    std::uint64_t lengthErrors = 0;
    std::uint64_t overruns = 0;        // the device had no room
    std::uint64_t checksumErrors = 0;  // of frames (CRC)
    std::uint64_t alignmentErrors = 0;
    std::uint64_t fifoErrors = 0;
    std::uint64_t missed = 0;   // the host had no buffer
    std::uint64_t aborted = 0;  // sending was given up, after too many collisions for one reason
    std::uint64_t carrierErrors = 0;
    std::uint64_t sendFifoErrors = 0;
    std::uint64_t heartbeatErrors = 0;
    std::uint64_t windowErrors = 0;  // late collisions
};

// A network interface, as the kernel tells of it.
struct Link {
    std::int32_t index = 0;
    std::string name;
    std::string kind;         // "veth", "bridge"; empty for a device with a driver of its own
    std::int32_t master = 0;  // the index of the bridge, bond, VRF, ... that it is part of; else 0
    std::uint16_t hardwareType = 0;  // ARPHRD_ETHER, ...
    std::optional<EthernetAddress> address;
    std::optional<EthernetAddress> permanentAddress;
    std::uint32_t mtu = 0;
    std::uint32_t smallestMtu = 0;
    std::uint32_t largestMtu = 0;  // 0 where the driver states none
    bool isUp = false;             // by the administrator
    bool hasCarrier = false;
    std::uint32_t sendQueues = 0;
    std::uint32_t receiveQueues = 0;
    LinkCounters counters;
};

// Every interface of this network namespace, in the order of their indices. Throws SystemFailure.
std::vector<Link> ReadLinks(Socket& route);

// One interface; throws SystemFailure (ENODEV) when it is gone.
Link ReadLink(Socket& route, std::int32_t index);

// Change one thing of an interface. An interface that has to be down for it is not taken down.
// Throws SystemFailure.
void SetMtu(Socket& route, const Link& link, std::uint32_t mtu);
void SetAddress(Socket& route, const Link& link, const EthernetAddress& address);

}  // namespace tavrolinux
