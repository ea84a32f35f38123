#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"
#include "linux/netlink/socket.h"

// The routes through interfaces.
namespace tavrolinux {

struct Route {
    IpAddress destination;
    std::uint8_t prefixLength = 0;  // 0 for a default route
    std::uint32_t table = 0;        // RT_TABLE_MAIN, ...
    std::uint8_t type = 0;          // RTN_UNICAST, ...
    std::uint8_t protocol = 0;      // who made it: RTPROT_KERNEL, ...
    // Of the first next hop through the interface; of IPv4, too, it can be an address of IPv6.
    std::optional<IpAddress> gateway;
    bool isThroughLink = false;       // some next hop is; false where only `source` was asked for
    std::size_t nextHops = 1;         // among which the kernel chooses, through all interfaces
    std::optional<IpAddress> source;  // the preferred one of what is sent
    std::uint32_t metric = 0;
    std::uint32_t secondsLeft = 0;  // until it goes by itself; 0 for never
    // Of IPv4: among equals, of which the first counts, one that was not asked for stands before it
    // or behind it.
    bool isBehindOther = false;
    bool isBeforeOther = false;
    std::vector<std::uint8_t> told;  // as the kernel tells it, without its state, to make it anew

    // Whether both are the same in everything but the time that is left.
    bool IsSame(const Route& other) const { return told == other.told; }

    // The same route with another preferred source, or with none.
    Route WithSource(const std::optional<IpAddress>& other) const;

    // How a message names it: "the route to 198.51.100.0/24 192.0.2.1".
    std::string Text() const;
};

// The routes of all tables through the interface, the lowest metric first, else in the kernel's
// order. With `sources` also those through other interfaces that prefer one of them as the source.
// Throws SystemFailure.
std::vector<Route> ReadRoutes(Socket& route, const Link& link, Family family,
                              std::span<const IpAddress> sources = {});

// The default route that counts: of the main table, with a gateway, of the lowest metric. Null
// without one.
const Route* DefaultRoute(const std::vector<Route>& routes);

// The interface of a default route of the main table with this metric (0 for the usual one), other
// than that one where it is given. Throws SystemFailure.
std::optional<std::int32_t> InterfaceWithDefaultRoute(Socket& route, Family family,
                                                      std::uint32_t metric, const Route* other);

// The default route of the main table by that gateway, as it is added; a metric of 0 stands for the
// usual one.
Route NewDefaultRoute(const IpAddress& gateway, std::uint32_t metric);

// Makes a route anew that the kernel told of (before its equals, if others stood behind it), adds a
// default route, takes a route away. Throw SystemFailure.
void RestoreRoute(Socket& route, const Link& link, const Route& former);
void AddDefaultRoute(Socket& route, const Link& link, const Route& added);
void RemoveRoute(Socket& route, const Link& link, const Route& removed);

}  // namespace tavrolinux
