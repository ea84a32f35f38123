#include "linux/netlink/routes.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// How a message names a route.
std::string RouteText(const Route& route) {
    std::string text = route.prefixLength == 0 ? std::string("the gateway")
                                               : "the route to " + TextOf(route.destination) + '/' +
                                                     std::to_string(route.prefixLength);
    return route.gateway ? text + ' ' + TextOf(*route.gateway) : text;
}

std::optional<Route> RouteFrom(const nlmsghdr& message, const Link& link, Family family) {
    const auto header = HeaderOf<rtmsg>(message);
    if (header.rtm_family != SystemFamily(family) || header.rtm_type != RTN_UNICAST ||
        header.rtm_protocol == RTPROT_KERNEL) {
        return std::nullopt;
    }
    Route route;
    route.destination.family = family;
    route.prefixLength = header.rtm_dst_len;
    std::uint32_t table = header.rtm_table;
    std::uint32_t interface = 0;
    ForEachAttribute(AttributesOf(message, sizeof header), [&](int type, const nlattr& attribute) {
        if (type == RTA_TABLE) {
            table = static_cast<std::uint32_t>(NumberOf(attribute));
        } else if (type == RTA_OIF) {
            interface = static_cast<std::uint32_t>(NumberOf(attribute));
        } else if (type == RTA_GATEWAY) {
            route.gateway = AddressFrom(family, attribute);
        } else if (type == RTA_DST) {
            route.destination = AddressFrom(family, attribute);
        } else if (type == RTA_PRIORITY) {
            route.metric = static_cast<std::uint32_t>(NumberOf(attribute));
        }
    });
    if (table != RT_TABLE_MAIN || interface != static_cast<std::uint32_t>(link.index)) {
        return std::nullopt;
    }
    const auto* const data = static_cast<const std::uint8_t*>(nlmsg_data(&message));
    route.told.assign(data, data + nlmsg_datalen(&message));
    return route;
}

rtmsg HeaderOfRoute(Family family) {
    rtmsg header{};
    header.rtm_family = SystemFamily(family);
    header.rtm_table = RT_TABLE_MAIN;
    return header;
}

}  // namespace

std::vector<Route> ReadRoutes(Socket& route, const Link& link, Family family) {
    std::vector<Route> routes;
    Message request(RTM_GETROUTE, NLM_F_DUMP);
    request.Append(HeaderOfRoute(family));
    request.PutNumber32(RTA_OIF, static_cast<std::uint32_t>(link.index));
    const auto take = [&](const nlmsghdr& message) {
        if (std::optional<Route> told = RouteFrom(message, link, family)) {
            routes.push_back(std::move(*told));
        }
    };
    route.Request(request, "reading the routes of " + link.name, take, [&] { routes.clear(); });
    std::ranges::stable_sort(routes, {}, &Route::metric);
    return routes;
}

const Route* DefaultRoute(const std::vector<Route>& routes) {
    const auto found = std::ranges::find_if(
        routes, [](const Route& route) { return route.prefixLength == 0 && route.gateway; });
    return found == routes.end() ? nullptr : &*found;
}

void RestoreRoute(Socket& route, const Link& link, const Route& former) {
    // What the kernel says of the route's state is none of what makes it.
    std::vector<std::uint8_t> told = former.told;
    rtmsg header{};
    std::memcpy(&header, told.data(), std::min(sizeof header, told.size()));
    header.rtm_flags &= RTNH_F_ONLINK;
    std::memcpy(told.data(), &header, std::min(sizeof header, told.size()));
    Message message(RTM_NEWROUTE, NLM_F_CREATE | NLM_F_EXCL);
    message.Append(told.data(), told.size());
    route.Request(message, "restoring " + RouteText(former) + " of " + link.name);
}

void AddDefaultRoute(Socket& route, const Link& link, const IpAddress& gateway,
                     std::uint32_t metric) {
    Message message(RTM_NEWROUTE, NLM_F_CREATE | NLM_F_EXCL);
    rtmsg header = HeaderOfRoute(gateway.family);
    header.rtm_protocol = RTPROT_STATIC;
    header.rtm_type = RTN_UNICAST;
    message.Append(header);
    message.Put(RTA_GATEWAY, OctetsOf(gateway));
    message.PutNumber32(RTA_OIF, static_cast<std::uint32_t>(link.index));
    if (metric != 0) {
        message.PutNumber32(RTA_PRIORITY, metric);
    }
    route.Request(message, "adding the gateway " + TextOf(gateway) + " of " + link.name);
}

void RemoveRoute(Socket& route, const Link& link, const Route& removed) {
    Message message(RTM_DELROUTE, 0);
    message.Append(removed.told.data(), removed.told.size());
    route.Request(message, "taking " + RouteText(removed) + " from " + link.name);
}

}  // namespace tavrolinux
