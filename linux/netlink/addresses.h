#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "linux/netlink/links.h"
#include "linux/netlink/socket.h"

// The IP addresses of interfaces.
namespace tavrolinux {

enum class Family { IPv4, IPv6 };

// An IPv4 or IPv6 address; of IPv4 the first four octets.
struct IpAddress {
    Family family = Family::IPv4;
    std::array<std::uint8_t, 16> octets{};

    bool operator==(const IpAddress&) const = default;
    bool IsZero() const;
    // Whether an interface can have it as the address of this host towards others: it is none of
    // loopback, multicast or reserved addresses, and none that IPv6 makes up for each link.
    bool IsForHost() const;
    // Whether it names the network itself, or all of its hosts, where its mask is that long.
    bool IsForAll(std::uint32_t prefixLength) const;
};

// Whether the first bits of both are the same.
bool AreInOneNetwork(const IpAddress& a, const IpAddress& b, std::uint32_t prefixLength);

// The system's number of the family, and how an address is put into a message and read from one.
std::uint8_t SystemFamily(Family family);
std::span<const std::uint8_t> OctetsOf(const IpAddress& address);
IpAddress AddressFrom(Family family, const nlattr& attribute);

// The address that the text writes as usual, without a zone; nothing for every other text.
std::optional<IpAddress> IpAddressFrom(std::string_view text);

// The address as it is written: "192.0.2.1", "2001:db8::1".
std::string TextOf(const IpAddress& address);

// Writes a prefix length as an IPv4 mask, and reads it; nothing for what is no mask of leading
// ones.
std::string MaskText(std::uint32_t prefixLength);
std::optional<std::uint32_t> PrefixLengthOf(const IpAddress& mask);

// An address of an interface.
struct AssignedAddress {
    IpAddress address;
    IpAddress peer;  // at the other end of a point-to-point link; else the address itself
    std::uint32_t prefixLength = 0;
    std::uint8_t scope = 0;          // RT_SCOPE_UNIVERSE, RT_SCOPE_LINK, ...
    bool isPermanent = true;         // without it the address was leased or announced, for a time
    bool isSecondary = false;        // of IPv4: another of the same network came first
    bool isTemporary = false;        // of IPv6: made up for privacy
    bool isTentative = false;        // of IPv6: it cannot be used yet
    bool isTaken = false;            // of IPv6: another host has it
    bool makesRoute = true;          // to its network
    std::uint32_t metric = 0;        // of that route; 0 for the usual one
    std::vector<std::uint8_t> told;  // as the kernel tells it, to make it anew

    // Whether the kernel holds both for one.
    bool IsSame(const AssignedAddress& other) const {
        return address == other.address && peer == other.peer && prefixLength == other.prefixLength;
    }
};

// The permanent global address, as it is added to an interface that does not have it. It has the
// metric of the one that it replaces, and in that one's network makes a route where that did.
AssignedAddress NewAddress(const Link& link, const IpAddress& address, std::uint32_t prefixLength,
                           const std::optional<AssignedAddress>& replaced = std::nullopt);

// The addresses of one interface and family in the kernel's order. Throws SystemFailure.
std::vector<AssignedAddress> ReadAddresses(Socket& route, const Link& link, Family family);

// Adds an address with everything that was told of it: for the rest of its time, with its label and
// metric, ...; nothing happens when its time is over. The kernel puts one of IPv4 behind the
// others of its kind, one of IPv6 in front of them. Throws SystemFailure.
void AddAddress(Socket& route, const Link& link, const AssignedAddress& address);

// Takes one address away. Throws SystemFailure.
void RemoveAddress(Socket& route, const Link& link, const AssignedAddress& address);

// Gives an address that the interface has the lifetime that was told of it, or lets it stay for
// good. Throws SystemFailure.
void RestoreLifetime(Socket& route, const Link& link, const AssignedAddress& former);
void MakePermanent(Socket& route, const Link& link, const AssignedAddress& address);

}  // namespace tavrolinux
