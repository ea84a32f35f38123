#include "linux/tcpip/static_settings.h"

#include <algorithm>
#include <string>
#include <vector>

#include "linux/inventory/ip_settings.h"
#include "linux/netlink/routes.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

bool IsSame(const AssignedAddress& a, const AssignedAddress& b) {
    return a.address == b.address && a.prefixLength == b.prefixLength;
}

bool IsSame(const Route& a, const Route& b) {
    return a.IsSame(b);
}

template <class Thing>
bool Holds(const std::vector<Thing>& things, const Thing& wanted) {
    return std::ranges::any_of(things, [&](const Thing& thing) { return IsSame(thing, wanted); });
}

// What an interface had of one family, and changing it.
class Change {
  public:
    Change(Socket& route, const Link& link, Family family)
        : route_(route),
          link_(link),
          family_(family),
          addresses_(ReadAddresses(route, link, family)),
          routes_(ReadRoutes(route, link, family)) {}

    // With an address the kernel takes away those that it holds for secondary to it, and with the
    // last address all routes. Those that can still be are made anew.
    void ReplaceAddress(const std::optional<AssignedAddress>& wanted) {
        const std::optional<AssignedAddress> shown = ShownAddress(addresses_);
        const bool stays = shown && wanted && shown->isPermanent && IsSame(*shown, *wanted);
        if (stays || (!shown && !wanted)) {
            return;
        }
        if (shown) {
            RemoveAddress(route_, link_, *shown);
        }
        if (wanted && !Holds(ReadAddresses(route_, link_, family_), *wanted)) {
            AddAddress(route_, link_, *wanted);
        }
        for (const AssignedAddress& other : addresses_) {
            if (!shown || !IsSame(other, *shown)) {
                AddWhereMissing(other);
            }
        }
    }

    void ReplaceGateway(const IpAddress& gateway) {
        const Route* const shown = DefaultRoute(routes_);
        const bool stays = shown != nullptr && shown->gateway == gateway;
        const std::vector<Route> now = ReadRoutes(route_, link_, family_);
        for (const Route& other : routes_) {
            if (&other != shown && !Holds(now, other)) {
                TryToRestore(other);
            }
        }
        if (shown != nullptr && !stays && Holds(now, *shown)) {
            RemoveRoute(route_, link_, *shown);
        }
        if (!gateway.IsZero() && !(stays && Holds(now, *shown))) {
            AddDefaultRoute(route_, link_, gateway, shown == nullptr ? 0 : shown->metric);
        }
    }

    // Puts back what was there, in the order in which it was there. Throws SystemFailure where the
    // kernel does not do that either.
    void Undo() {
        std::vector<AssignedAddress> now = ReadAddresses(route_, link_, family_);
        const auto [differing, former] = std::ranges::mismatch(
            now, addresses_,
            [](const AssignedAddress& a, const AssignedAddress& b) { return IsSame(a, b); });
        // The last one first, since others may go with an earlier one.
        now.erase(now.begin(), differing);
        for (auto address = now.rbegin(); address != now.rend(); ++address) {
            RemoveAddress(route_, link_, *address);
        }
        for (auto address = former; address != addresses_.end(); ++address) {
            AddWhereMissing(*address);
        }
        const std::vector<Route> routesNow = ReadRoutes(route_, link_, family_);
        for (const Route& added : routesNow) {
            if (!Holds(routes_, added)) {
                RemoveRoute(route_, link_, added);
            }
        }
        for (const Route& missing : routes_) {
            if (!Holds(routesNow, missing)) {
                RestoreRoute(route_, link_, missing);
            }
        }
    }

  private:
    void AddWhereMissing(const AssignedAddress& address) {
        if (!Holds(ReadAddresses(route_, link_, family_), address)) {
            AddAddress(route_, link_, address);
        }
    }

    // What was reachable through the former network only cannot be reached any more.
    void TryToRestore(const Route& former) {
        try {
            RestoreRoute(route_, link_, former);
        } catch (const SystemFailure&) {
            return;
        }
    }

    Socket& route_;
    const Link& link_;
    Family family_;
    std::vector<AssignedAddress> addresses_;
    std::vector<Route> routes_;
};

}  // namespace

void ApplyStaticSettings(Socket& route, const Link& link, const StaticSettings& wanted) {
    Change change(route, link, wanted.address.family);
    std::optional<AssignedAddress> address;
    if (!wanted.address.IsZero()) {
        address.emplace();
        address->address = wanted.address;
        address->prefixLength = wanted.prefixLength;
    }
    try {
        change.ReplaceAddress(address);
        change.ReplaceGateway(wanted.gateway);
    } catch (const SystemFailure& failure) {
        try {
            change.Undo();
        } catch (const SystemFailure& another) {
            throw SystemFailure(
                failure.Error(), failure.Action(), failure.Right(),
                std::string("the former settings are not restored: ") + another.what());
        }
        throw;
    }
}

}  // namespace tavrolinux
