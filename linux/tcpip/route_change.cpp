#include "linux/tcpip/route_change.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <chrono>
#include <iterator>

#include "linux/tcpip/address_use.h"

namespace tavrolinux {
namespace {

bool IsAmong(const std::vector<Route>& routes, const Route& one) {
    return std::ranges::any_of(routes, [&](const Route& route) { return route.IsSame(one); });
}

std::vector<IpAddress> SourcesOf(const std::vector<AssignedAddress>& addresses,
                                 const IpAddress& wanted) {
    std::vector<IpAddress> sources{wanted};
    std::ranges::transform(addresses, std::back_inserter(sources), &AssignedAddress::address);
    return sources;
}

// Whether the kernel made the route for one of the addresses, and makes it anew with that.
bool FollowsFrom(const Route& route, const AssignedAddress& address) {
    constexpr std::uint32_t UsualMetricIPv6 = 256;
    const bool isIPv4 = address.address.family == Family::IPv4;
    const std::uint32_t whole = isIPv4 ? 32 : 128;
    const auto leadsTo = [&route](const IpAddress& network, std::uint32_t prefixLength) {
        return route.prefixLength == prefixLength &&
               AreInOneNetwork(route.destination, network, prefixLength);
    };
    if (route.table == RT_TABLE_LOCAL) {
        return leadsTo(address.address, whole);
    }
    const std::uint32_t usual = isIPv4 ? 0 : UsualMetricIPv6;
    return route.table == RT_TABLE_MAIN && !route.gateway && address.makesRoute &&
           route.metric == (address.metric == 0 ? usual : address.metric) &&
           (leadsTo(address.address, address.prefixLength) ||
            leadsTo(address.peer, address.prefixLength) || leadsTo(address.peer, whole));
}

// Whether the kernel sees to the route, as long as the interface and the addresses are there.
bool IsLeftToKernel(const Route& route, const std::vector<AssignedAddress>& addresses) {
    // Some kernels do not say that what they made of this table is theirs.
    const bool isLocal = route.table == RT_TABLE_LOCAL;
    if (route.protocol != RTPROT_KERNEL && !(isLocal && route.protocol == RTPROT_UNSPEC)) {
        return false;
    }
    return !route.isThroughLink || (isLocal && route.type != RTN_LOCAL) ||
           std::ranges::any_of(addresses, [&](const AssignedAddress& address) {
               return FollowsFrom(route, address);
           });
}

bool IsMadeFrom(const Route& route, const Route& added) {
    return route.destination == added.destination && route.prefixLength == added.prefixLength &&
           route.table == added.table && route.type == added.type &&
           route.protocol == added.protocol && route.gateway == added.gateway &&
           route.source == added.source && route.metric == added.metric;
}

}  // namespace

RouteChange::RouteChange(Socket& route, const Link& link, Family family,
                         const std::vector<AssignedAddress>& addresses, const IpAddress& wanted)
    : route_(route),
      link_(link),
      family_(family),
      sources_(SourcesOf(addresses, wanted)),
      former_(Now()) {
    std::erase_if(former_, [&](const Route& one) { return IsLeftToKernel(one, addresses); });
    shown_ = DefaultRoute(former_);
}

// A gateway that is announced for a time is to stay for good, unless it is one of several.
bool RouteChange::Keeps(const IpAddress& gateway) const {
    return shown_ != nullptr && shown_->gateway == gateway &&
           (shown_->secondsLeft == 0 || shown_->nextHops > 1);
}

bool RouteChange::IsOneOfSeveral(const IpAddress& gateway) const {
    return shown_ != nullptr && shown_->nextHops > 1 && !Keeps(gateway);
}

std::optional<std::int32_t> RouteChange::InterfaceInTheWayOf(const IpAddress& gateway) const {
    return gateway.IsZero() || Keeps(gateway)
               ? std::nullopt
               : InterfaceWithDefaultRoute(route_, family_, WantedMetric(), shown_);
}

const Route* RouteChange::OneBetweenOthers() const {
    const auto found = std::ranges::find_if(
        former_, [](const Route& route) { return route.isBehindOther && route.isBeforeOther; });
    return found == former_.end() ? nullptr : &*found;
}

std::vector<std::string> RouteChange::Restore(const std::optional<IpAddress>& replaced,
                                              const IpAddress& wanted, const IpAddress& gateway) {
    const std::vector<Route> now = Now();
    std::vector<Route> missing;
    for (const Route& former : former_) {
        if (&former == shown_ && !Keeps(gateway)) {
            continue;
        }
        const bool isMoved = replaced && former.source == *replaced && !wanted.IsZero();
        Route kept = isMoved ? former.WithSource(wanted) : former;
        if (!IsAmong(now, kept)) {
            RemoveLeftOf(former, now);
            if (isMoved) {
                added_.push_back(kept);
            }
            missing.push_back(std::move(kept));
        }
    }
    std::vector<std::string> lost;
    for (const SystemFailure& failure : MakeAnew(std::move(missing))) {
        if (failure.IsGone() || failure.IsMissingRight()) {
            throw SystemFailure(failure);
        }
        lost.emplace_back(failure.what());
    }
    return lost;
}

void RouteChange::ReplaceGateway(const IpAddress& gateway) {
    if (Keeps(gateway)) {
        return;
    }
    if (shown_ != nullptr) {
        RemoveLeftOf(*shown_, Now());
    }
    if (!gateway.IsZero()) {
        const Route wanted = NewDefaultRoute(gateway, WantedMetric());
        // It is noted first, since it may come even where the kernel's answer is lost.
        added_.push_back(wanted);
        AddDefaultRoute(route_, link_, wanted);
    }
}

bool RouteChange::IsOwn(const Route& route) const {
    return !IsAmong(former_, route) && std::ranges::any_of(added_, [&](const Route& added) {
        return IsMadeFrom(route, added);
    });
}

void RouteChange::Undo(Attempts& attempts) {
    std::vector<Route> missing;
    const std::vector<Route> now = Now();
    for (const Route& one : now) {
        if (IsOwn(one)) {
            attempts([&] { RemoveRoute(route_, link_, one); });
        }
    }
    for (const Route& former : former_) {
        if (!IsAmong(now, former)) {
            attempts([&] { RemoveLeftOf(former, now); });
            missing.push_back(former);
        }
    }
    for (const SystemFailure& failure : MakeAnew(std::move(missing))) {
        attempts([&] { throw SystemFailure(failure); });
    }
}

// Some kernels leave a route whose source goes, or leave it without one.
void RouteChange::RemoveLeftOf(const Route& former, const std::vector<Route>& now) {
    const Route withoutSource = former.WithSource(std::nullopt);
    if (IsAmong(now, former)) {
        RemoveRoute(route_, link_, former);
    } else if (IsAmong(now, withoutSource) && !IsAmong(former_, withoutSource)) {
        RemoveRoute(route_, link_, withoutSource);
    }
}

// A route may be reachable through another one only, so that those which fail are tried again as
// long as others succeed.
std::vector<SystemFailure> RouteChange::MakeAnew(std::vector<Route> missing) {
    constexpr std::chrono::seconds Patience{5};
    // What stood before others comes in front of its equals, so that the first comes last.
    const auto behind = std::stable_partition(missing.begin(), missing.end(),
                                              [](const Route& one) { return one.isBeforeOther; });
    std::reverse(missing.begin(), behind);
    std::vector<IpAddress> sources;
    for (const Route& one : missing) {
        if (one.source) {
            sources.push_back(*one.source);
        }
    }
    IsOneTaken(route_, link_, sources, Patience);
    std::vector<SystemFailure> failures;
    for (std::size_t before = missing.size() + 1; !missing.empty() && missing.size() < before;) {
        before = missing.size();
        failures.clear();
        std::vector<Route> failed;
        for (Route& one : missing) {
            try {
                RestoreRoute(route_, link_, one);
            } catch (const SystemFailure& failure) {
                failures.push_back(failure);
                failed.push_back(std::move(one));
            }
        }
        missing = std::move(failed);
    }
    return failures;
}

}  // namespace tavrolinux
