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
    Message message(RTM_NEWROUTE, 0, static_cast<std::size_t>(nlmsg_datalen(&told)));
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
    if (header.rtm_family != SystemFamily(family) || (header.rtm_flags & RTM_F_CLONED) != 0) {
        return std::nullopt;
    }
    const auto wanted = static_cast<std::uint32_t>(link.index);
    Route route;
    route.destination.family = family;
    route.prefixLength = header.rtm_dst_len;
    route.table = header.rtm_table;
    route.type = header.rtm_type;
    route.protocol = header.rtm_protocol;
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
    return route;
}

// The interface of the route's first next hop; 0 where it leads nowhere.
std::int32_t FirstInterface(const nlmsghdr& message) {
    std::int32_t interface = 0;
    ForEachAttribute(AttributesOf(message, sizeof(rtmsg)), [&](int type, const nlattr& attribute) {
        if (type == RTA_OIF) {
            interface = static_cast<std::int32_t>(NumberOf(attribute));
        } else if (type == RTA_MULTIPATH) {
            ForEachNextHop(BytesOf(attribute), [&](const rtnexthop& hop, auto) {
                interface = interface == 0 ? hop.rtnh_ifindex : interface;
            });
        }
    });
    return interface;
}

// What is said of a route, and a lifetime.
std::size_t RoomFor(const Route& route) {
    return route.told.size() + sizeof(nlattr) + sizeof(std::uint32_t);
}

rtmsg HeaderOfRoute(Family family) {
    rtmsg header{};
    header.rtm_family = SystemFamily(family);
    return header;
}

// The routes that differ only in where they lead, which the kernel tells one behind the other.
class RowOfEquals {
  public:
    // Notes where the route stands; `wanted` are those that were wanted before it.
    void Take(Route& route, std::uint8_t serviceType, bool isWanted, std::vector<Route>& wanted) {
        const Key key{route.table, route.destination, route.prefixLength, serviceType,
                      route.metric};
        if (key != key_) {
            key_ = key;
            start_ = wanted.size();
            hasOther_ = false;
        }
        if (isWanted) {
            route.isBehindOther = hasOther_;
            return;
        }
        hasOther_ = true;
        for (Route& before : std::span(wanted).subspan(start_)) {
            before.isBeforeOther = true;
        }
    }

  private:
    struct Key {
        std::uint32_t table = 0;
        IpAddress destination;
        std::uint8_t prefixLength = 0;
        std::uint8_t serviceType = 0;
        std::uint32_t metric = 0;

        bool operator==(const Key&) const = default;
    };

    std::optional<Key> key_;
    std::size_t start_ = 0;  // of those that are wanted
    bool hasOther_ = false;
};

// The kernel gives a route of IPv6 without a metric this one.
std::uint32_t MetricOf(Family family, std::uint32_t metric) {
    constexpr std::uint32_t UsualIPv6 = 1024;
    return family == Family::IPv6 && metric == 0 ? UsualIPv6 : metric;
}

}  // namespace

Route Route::WithSource(const std::optional<IpAddress>& other) const {
    Message message(RTM_NEWROUTE, 0, told.size());
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
    RowOfEquals equals;
    Message request(RTM_GETROUTE, NLM_F_DUMP);
    request.Append(HeaderOfRoute(family));
    if (sources.empty()) {
        request.PutNumber32(RTA_OIF, static_cast<std::uint32_t>(link.index));
    }
    const auto take = [&](const nlmsghdr& message) {
        std::optional<Route> one = RouteFrom(message, link, family);
        if (!one) {
            return;
        }
        const bool isWanted =
            one->isThroughLink ||
            (one->source && std::ranges::find(sources, *one->source) != sources.end());
        if (family == Family::IPv4) {
            equals.Take(*one, HeaderOf<rtmsg>(message).rtm_tos, isWanted, routes);
        }
        if (isWanted) {
            one->told = WithoutState(message);
            routes.push_back(std::move(*one));
        }
    };
    route.Request(request, "reading the routes of " + link.name, take, [&] {
        routes.clear();
        equals = {};
    });
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

std::optional<std::int32_t> InterfaceWithDefaultRoute(Socket& route, Family family,
                                                      std::uint32_t metric, const Route* other) {
    std::optional<std::int32_t> found;
    Message request(RTM_GETROUTE, NLM_F_DUMP);
    request.Append(HeaderOfRoute(family));
    const auto take = [&](const nlmsghdr& message) {
        const std::int32_t interface = FirstInterface(message);
        Link through;
        through.index = interface;
        const std::optional<Route> one = RouteFrom(message, through, family);
        if (one && interface != 0 && one->prefixLength == 0 && one->table == RT_TABLE_MAIN &&
            HeaderOf<rtmsg>(message).rtm_tos == 0 && one->metric == MetricOf(family, metric) &&
            (other == nullptr || WithoutState(message) != other->told)) {
            found = interface;
        }
    };
    route.Request(request, "reading the default routes", take, [&] { found.reset(); });
    return found;
}

void RestoreRoute(Socket& route, const Link& link, const Route& former) {
    // IPv4 may have several that differ in the next hop only, IPv6 would make one of them.
    const int amongEquals = former.isBeforeOther ? 0 : NLM_F_APPEND;
    const int otherwise = former.destination.family == Family::IPv4 ? amongEquals : NLM_F_EXCL;
    Message message(RTM_NEWROUTE, NLM_F_CREATE | otherwise, RoomFor(former));
    message.Append(former.told.data(), former.told.size());
    if (former.secondsLeft != 0) {
        message.PutNumber32(RTA_EXPIRES, former.secondsLeft);
    }
    route.Request(message, "restoring " + former.Text() + " of " + link.name);
}

Route NewDefaultRoute(const IpAddress& gateway, std::uint32_t metric) {
    Route made;
    made.destination.family = gateway.family;
    made.table = RT_TABLE_MAIN;
    made.type = RTN_UNICAST;
    made.protocol = RTPROT_STATIC;
    made.gateway = gateway;
    made.metric = MetricOf(gateway.family, metric);
    return made;
}

void AddDefaultRoute(Socket& route, const Link& link, const Route& added) {
    Message message(RTM_NEWROUTE, NLM_F_CREATE | NLM_F_EXCL);
    rtmsg header = HeaderOfRoute(added.destination.family);
    header.rtm_table = RT_TABLE_MAIN;
    header.rtm_protocol = added.protocol;
    header.rtm_type = added.type;
    message.Append(header);
    message.Put(RTA_GATEWAY, OctetsOf(*added.gateway));
    message.PutNumber32(RTA_OIF, static_cast<std::uint32_t>(link.index));
    if (added.metric != 0) {
        message.PutNumber32(RTA_PRIORITY, added.metric);
    }
    route.Request(message, "adding the gateway " + TextOf(*added.gateway) + " of " + link.name);
}

void RemoveRoute(Socket& route, const Link& link, const Route& removed) {
    Message message(RTM_DELROUTE, 0, RoomFor(removed));
    message.Append(removed.told.data(), removed.told.size());
    route.Request(message, "taking " + removed.Text() + " from " + link.name);
}

}  // namespace tavrolinux
