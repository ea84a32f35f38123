#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"
#include "linux/netlink/socket.h"

// The routes through interfaces.
namespace tavrolinux {

// A route of the main table through one interface which somebody made: none that follows from an
// address.
struct Route {
    IpAddress destination;
    std::uint8_t prefixLength = 0;  // 0 for a default route
    std::optional<IpAddress> gateway;
    std::uint32_t metric = 0;
    std::vector<std::uint8_t> told;  // as the kernel tells it, to make it anew

    // Whether the kernel holds both for one.
    bool IsSame(const Route& other) const {
        return destination == other.destination && prefixLength == other.prefixLength &&
               gateway == other.gateway && metric == other.metric;
    }
};

// The routes through the interface, the lowest metric first, else in the kernel's order. Throws
// SystemFailure.
std::vector<Route> ReadRoutes(Socket& route, const Link& link, Family family);

// The default route that counts: with a gateway, of the lowest metric. Null without one.
const Route* DefaultRoute(const std::vector<Route>& routes);

// Makes a route anew that the kernel told of, adds a default route, takes a route away. Throw
// SystemFailure.
void RestoreRoute(Socket& route, const Link& link, const Route& former);
void AddDefaultRoute(Socket& route, const Link& link, const IpAddress& gateway,
                     std::uint32_t metric);
void RemoveRoute(Socket& route, const Link& link, const Route& removed);

}  // namespace tavrolinux
