#include "linux/netlink/routes.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// What the kernel says of a next hop beside its own state.
constexpr unsigned char MadeFlags = RTNH_F_ONLINK | RTNH_F_PERVASIVE;

std::vector<std::uint8_t> BytesOfRequest(const Message& message) {
    const nlmsghdr& header = *nlmsg_hdr(message.Get());
    const auto* const data = static_cast<const std::uint8_t*>(nlmsg_data(&header));
    return {data, data + nlmsg_datalen(&header)};
}

std::span<const std::uint8_t> AttributesIn(const std::vector<std::uint8_t>& told) {
    return std::span(told).subspan(std::min(sizeof(rtmsg), told.size()));
}

rtmsg HeaderIn(const std::vector<std::uint8_t>& told) {
    rtmsg header{};
    std::memcpy(&header, told.data(), std::min(sizeof header, told.size()));
    return header;
}

// The bytes of a list of next hops; `visit` may change the header of each, and gets its attributes.
template <class Visit>
std::vector<std::uint8_t> ForEachNextHop(std::span<const std::uint8_t> list, Visit visit) {
    std::vector<std::uint8_t> changed(list.begin(), list.end());
    std::size_t at = 0;
    while (at + sizeof(rtnexthop) <= changed.size()) {
        rtnexthop hop{};
        std::memcpy(&hop, changed.data() + at, sizeof hop);
        if (hop.rtnh_len < sizeof hop || hop.rtnh_len > changed.size() - at) {
            break;
        }
        visit(hop, list.subspan(at + sizeof hop, hop.rtnh_len - sizeof hop));
        std::memcpy(changed.data() + at, &hop, sizeof hop);
        at += RTNH_ALIGN(hop.rtnh_len);
    }
    return changed;
}

// The gateway that an attribute names, where it names one.
std::optional<IpAddress> GatewayFrom(int type, const nlattr& attribute, Family family) {
    if (type == RTA_GATEWAY) {
        return AddressFrom(family, attribute);
    }
    // Of another family than the route's; the family's number stands before the address.
    constexpr std::size_t BytesOfFamily = 2;
    constexpr std::size_t BytesOfIPv6 = 16;
    const auto bytes = BytesOf(attribute);
    if (type != RTA_VIA || bytes.size() != BytesOfFamily + BytesOfIPv6) {
        return std::nullopt;
    }
    IpAddress gateway{Family::IPv6, {}};
    std::ranges::copy(bytes.subspan(BytesOfFamily), gateway.octets.begin());
    return gateway;
}

// What makes the route, out of what the kernel tells, which also says how it fares.
std::vector<std::uint8_t> WithoutState(const nlmsghdr& told) {
    auto header = HeaderOf<rtmsg>(told);
    header.rtm_flags &= MadeFlags;
    const auto attributes = AttributesOf(told, sizeof header);
    bool isByNumber = false;
    ForEachAttribute(attributes, [&isByNumber](int type, const nlattr&) {
        isByNumber = isByNumber || type == RTA_NH_ID;
    });
    Message message(RTM_NEWROUTE, 0);
    message.Append(header);
    ForEachAttribute(attributes, [&](int type, const nlattr& attribute) {
        // A route to a numbered next hop also tells what that is.
        const bool isOfNextHop = type == RTA_OIF || type == RTA_GATEWAY || type == RTA_VIA ||
                                 type == RTA_MULTIPATH || type == RTA_ENCAP ||
                                 type == RTA_ENCAP_TYPE;
        if (type == RTA_CACHEINFO || (isByNumber && isOfNextHop)) {
            return;
        }
        if (type == RTA_MULTIPATH) {
            message.Put(type, ForEachNextHop(BytesOf(attribute), [](rtnexthop& hop, auto) {
                            hop.rtnh_flags &= MadeFlags;
                        }));
            return;
        }
        message.Put(type, BytesOf(attribute));
    });
    return BytesOfRequest(message);
}

void TakeNextHops(const nlattr& attribute, std::uint32_t wanted, Family family, Route& route) {
    route.nextHops = 0;
    ForEachNextHop(BytesOf(attribute), [&](const rtnexthop& hop, auto attributes) {
        ++route.nextHops;
        if (route.isThroughLink || static_cast<std::uint32_t>(hop.rtnh_ifindex) != wanted) {
            return;
        }
        route.isThroughLink = true;
        ForEachAttribute(attributes, [&](int type, const nlattr& inner) {
            if (auto gateway = GatewayFrom(type, inner, family)) {
                route.gateway = gateway;
            }
        });
    });
}

std::uint32_t SecondsLeft(const nlattr& attribute) {
    constexpr std::uint32_t TicksPerSecond = 100;  // of times in messages, whatever the kernel's
    rta_cacheinfo state{};
    const auto bytes = BytesOf(attribute);
    std::memcpy(&state, bytes.data(), std::min(bytes.size(), sizeof state));
    return state.rta_expires > 0
               ? (static_cast<std::uint32_t>(state.rta_expires) + TicksPerSecond - 1) /
                     TicksPerSecond
               : 0;
}

std::optional<Route> RouteFrom(const nlmsghdr& message, const Link& link, Family family) {
    const auto header = HeaderOf<rtmsg>(message);
    if (header.rtm_family != SystemFamily(family) || header.rtm_protocol == RTPROT_KERNEL ||
        (header.rtm_flags & RTM_F_CLONED) != 0) {
        return std::nullopt;
    }
    const auto wanted = static_cast<std::uint32_t>(link.index);
    Route route;
    route.destination.family = family;
    route.prefixLength = header.rtm_dst_len;
    route.table = header.rtm_table;
    route.type = header.rtm_type;
    ForEachAttribute(AttributesOf(message, sizeof header), [&](int type, const nlattr& attribute) {
        switch (type) {
            case RTA_TABLE:
                route.table = static_cast<std::uint32_t>(NumberOf(attribute));
                break;
            case RTA_OIF:
                route.isThroughLink = NumberOf(attribute) == wanted;
                break;
            case RTA_MULTIPATH:
                TakeNextHops(attribute, wanted, family, route);
                break;
            case RTA_DST:
                route.destination = AddressFrom(family, attribute);
                break;
            case RTA_PREFSRC:
                route.source = AddressFrom(family, attribute);
                break;
            case RTA_PRIORITY:
                route.metric = static_cast<std::uint32_t>(NumberOf(attribute));
                break;
            case RTA_CACHEINFO:
                route.secondsLeft = SecondsLeft(attribute);
                break;
            default:
                if (auto gateway = GatewayFrom(type, attribute, family)) {
                    route.gateway = gateway;
                }
                break;
        }
    });
    if (route.table == RT_TABLE_LOCAL) {
        return std::nullopt;
    }
    route.told = WithoutState(message);
    return route;
}

rtmsg HeaderOfRoute(Family family) {
    rtmsg header{};
    header.rtm_family = SystemFamily(family);
    return header;
}

}  // namespace

Route Route::WithSource(const std::optional<IpAddress>& other) const {
    Message message(RTM_NEWROUTE, 0);
    message.Append(HeaderIn(told));
    ForEachAttribute(AttributesIn(told), [&](int attributeType, const nlattr& attribute) {
        if (attributeType != RTA_PREFSRC) {
            message.Put(attributeType, BytesOf(attribute));
        } else if (other) {
            message.Put(attributeType, OctetsOf(*other));
        }
    });
    Route changed = *this;
    changed.source = other;
    changed.told = BytesOfRequest(message);
    return changed;
}

std::string Route::Text() const {
    std::string text = prefixLength == 0 ? std::string("the gateway")
                                         : "the route to " + TextOf(destination) + '/' +
                                               std::to_string(prefixLength);
    if (gateway) {
        text += ' ' + TextOf(*gateway);
    }
    if (table != RT_TABLE_MAIN) {
        text += " in table " + std::to_string(table);
    }
    return text;
}

std::vector<Route> ReadRoutes(Socket& route, const Link& link, Family family,
                              std::span<const IpAddress> sources) {
    std::vector<Route> routes;
    Message request(RTM_GETROUTE, NLM_F_DUMP);
    request.Append(HeaderOfRoute(family));
    if (sources.empty()) {
        request.PutNumber32(RTA_OIF, static_cast<std::uint32_t>(link.index));
    }
    const auto take = [&](const nlmsghdr& message) {
        std::optional<Route> told = RouteFrom(message, link, family);
        if (told &&
            (told->isThroughLink ||
             (told->source && std::ranges::find(sources, *told->source) != sources.end()))) {
            routes.push_back(std::move(*told));
        }
    };
    route.Request(request, "reading the routes of " + link.name, take, [&] { routes.clear(); });
    std::ranges::stable_sort(routes, {}, &Route::metric);
    return routes;
}

const Route* DefaultRoute(const std::vector<Route>& routes) {
    const auto found = std::ranges::find_if(routes, [](const Route& route) {
        return route.isThroughLink && route.prefixLength == 0 && route.gateway &&
               route.table == RT_TABLE_MAIN && route.type == RTN_UNICAST;
    });
    return found == routes.end() ? nullptr : &*found;
}

void RestoreRoute(Socket& route, const Link& link, const Route& former) {
    // IPv4 may have several that differ in the next hop only, IPv6 would make one of them.
    const int otherwise = former.destination.family == Family::IPv4 ? NLM_F_APPEND : NLM_F_EXCL;
    Message message(RTM_NEWROUTE, NLM_F_CREATE | otherwise);
    message.Append(former.told.data(), former.told.size());
    if (former.secondsLeft != 0) {
        message.PutNumber32(RTA_EXPIRES, former.secondsLeft);
    }
    route.Request(message, "restoring " + former.Text() + " of " + link.name);
}

void AddDefaultRoute(Socket& route, const Link& link, const IpAddress& gateway,
                     std::uint32_t metric) {
    Message message(RTM_NEWROUTE, NLM_F_CREATE | NLM_F_EXCL);
    rtmsg header = HeaderOfRoute(gateway.family);
    header.rtm_table = RT_TABLE_MAIN;
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
    route.Request(message, "taking " + removed.Text() + " from " + link.name);
}

}  // namespace tavrolinux
