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

// A route that somebody made: none that follows from an address.
struct Route {
    IpAddress destination;
    std::uint8_t prefixLength = 0;  // 0 for a default route
    std::uint32_t table = 0;        // RT_TABLE_MAIN, ...
    std::uint8_t type = 0;          // RTN_UNICAST, ...
    // Of the first next hop through the interface; of IPv4, too, it can be an address of IPv6.
    std::optional<IpAddress> gateway;
    bool isThroughLink = false;       // some next hop is; false where only `source` was asked for
    std::size_t nextHops = 1;         // among which the kernel chooses, through all interfaces
    std::optional<IpAddress> source;  // the preferred one of what is sent
    std::uint32_t metric = 0;
    std::uint32_t secondsLeft = 0;   // until it goes by itself; 0 for never
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

// Makes a route anew that the kernel told of, adds a default route, takes a route away. Throw
// SystemFailure.
void RestoreRoute(Socket& route, const Link& link, const Route& former);
void AddDefaultRoute(Socket& route, const Link& link, const IpAddress& gateway,
                     std::uint32_t metric);
void RemoveRoute(Socket& route, const Link& link, const Route& removed);

}  // namespace tavrolinux
