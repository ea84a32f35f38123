#include "linux/tcpip/route_change.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <iterator>
#include <thread>

#include "linux/system/failure.h"

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

// An address of IPv6 is the source of nothing before the kernel has asked around for it, which
// takes a second or two.
void AwaitUse(Socket& route, const Link& link, const IpAddress& source) {
    constexpr std::chrono::milliseconds Pause{50};
    constexpr std::chrono::seconds Patience{5};
    const auto end = std::chrono::steady_clock::now() + Patience;
    while (std::chrono::steady_clock::now() < end) {
        const auto addresses = ReadAddresses(route, link, source.family);
        const auto found = std::ranges::find(addresses, source, &AssignedAddress::address);
        if (found == addresses.end() || !found->isTentative) {
            return;
        }
        std::this_thread::sleep_for(Pause);
    }
}

}  // namespace

RouteChange::RouteChange(Socket& route, const Link& link, Family family,
                         const std::vector<AssignedAddress>& addresses, const IpAddress& wanted)
    : route_(route),
      link_(link),
      family_(family),
      sources_(SourcesOf(addresses, wanted)),
      former_(Now()),
      shown_(DefaultRoute(former_)) {}

bool RouteChange::Keeps(const IpAddress& gateway) const {
    return shown_ != nullptr && shown_->gateway == gateway;
}

bool RouteChange::IsOneOfSeveral(const IpAddress& gateway) const {
    return shown_ != nullptr && shown_->nextHops > 1 && !Keeps(gateway);
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
            missing.push_back(std::move(kept));
        }
    }
    return MakeAnew(std::move(missing));
}

void RouteChange::ReplaceGateway(const IpAddress& gateway) {
    if (Keeps(gateway)) {
        return;
    }
    if (shown_ != nullptr) {
        RemoveLeftOf(*shown_, Now());
    }
    if (!gateway.IsZero()) {
        AddDefaultRoute(route_, link_, gateway, shown_ == nullptr ? 0 : shown_->metric);
    }
}

void RouteChange::Undo() {
    std::vector<Route> missing;
    const std::vector<Route> now = Now();
    for (const Route& added : now) {
        if (!IsAmong(former_, added)) {
            RemoveRoute(route_, link_, added);
        }
    }
    std::ranges::copy_if(former_, std::back_inserter(missing),
                         [&](const Route& former) { return !IsAmong(now, former); });
    const std::vector<std::string> lost = MakeAnew(std::move(missing));
    if (!lost.empty()) {
        throw SystemFailure(EIO, lost.front());
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
std::vector<std::string> RouteChange::MakeAnew(std::vector<Route> missing) {
    std::vector<std::string> failures;
    for (std::size_t before = missing.size() + 1; !missing.empty() && missing.size() < before;) {
        before = missing.size();
        failures.clear();
        std::vector<Route> failed;
        for (Route& one : missing) {
            try {
                if (family_ == Family::IPv6 && one.source) {
                    AwaitUse(route_, link_, *one.source);
                }
                RestoreRoute(route_, link_, one);
            } catch (const SystemFailure& failure) {
                if (failure.IsGone() || failure.IsMissingRight()) {
                    throw;
                }
                failures.emplace_back(failure.what());
                failed.push_back(std::move(one));
            }
        }
        missing = std::move(failed);
    }
    return failures;
}

}  // namespace tavrolinux
