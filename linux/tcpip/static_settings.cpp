#include "linux/tcpip/static_settings.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <string>
#include <vector>

#include "linux/inventory/ip_settings.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

bool IsSame(const AssignedAddress& a, const AssignedAddress& b) {
    return a.address == b.address && a.prefixLength == b.prefixLength;
}

bool IsSame(const DefaultRoute& a, const DefaultRoute& b) {
    return a.gateway == b.gateway && a.metric == b.metric;
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
          routes_(ReadDefaultRoutes(route, link, family)) {}

    // The kernel takes addresses away that it holds for secondary to the one that goes, and routes
    // that are not reachable without it.
    void ReplaceAddress(const std::optional<AssignedAddress>& wanted) {
        const std::optional<AssignedAddress> shown = ShownAddress(addresses_);
        const bool stays = shown && wanted && shown->isPermanent && IsSame(*shown, *wanted);
        if (stays || (!shown && !wanted)) {
            return;
        }
        if (shown) {
            RemoveAddress(route_, link_, *shown);
        }
        std::vector<AssignedAddress> now = ReadAddresses(route_, link_, family_);
        if (wanted && !Holds(now, *wanted)) {
            AddAddress(route_, link_, *wanted);
        }
        for (const AssignedAddress& other : addresses_) {
            if (!shown || !IsSame(other, *shown)) {
                AddWhereMissing(other);
            }
        }
    }

    void ReplaceGateway(const IpAddress& gateway) {
        const std::optional<DefaultRoute> shown =
            routes_.empty() ? std::nullopt : std::optional(routes_.front());
        const DefaultRoute wanted{gateway, shown ? shown->metric : 0, RTPROT_STATIC};
        const std::vector<DefaultRoute> now = ReadDefaultRoutes(route_, link_, family_);
        const bool stays = !gateway.IsZero() && Holds(now, wanted);
        if (shown && Holds(now, *shown) && !(stays && IsSame(*shown, wanted))) {
            RemoveDefaultRoute(route_, link_, *shown);
        }
        if (!gateway.IsZero() && !stays) {
            AddDefaultRoute(route_, link_, wanted);
        }
        for (std::size_t other = 1; other < routes_.size(); ++other) {
            if (!Holds(now, routes_[other])) {
                TryToAdd(routes_[other]);
            }
        }
    }

    // Puts back what was there. Throws SystemFailure where the kernel does not do that either.
    void Undo() {
        for (const AssignedAddress& address : ReadAddresses(route_, link_, family_)) {
            if (!Holds(addresses_, address)) {
                RemoveAddress(route_, link_, address);
            }
        }
        for (const AssignedAddress& address : addresses_) {
            AddWhereMissing(address);
        }
        const std::vector<DefaultRoute> now = ReadDefaultRoutes(route_, link_, family_);
        for (const DefaultRoute& added : now) {
            if (!Holds(routes_, added)) {
                RemoveDefaultRoute(route_, link_, added);
            }
        }
        for (const DefaultRoute& missing : routes_) {
            if (!Holds(now, missing)) {
                AddDefaultRoute(route_, link_, missing);
            }
        }
    }

  private:
    void AddWhereMissing(const AssignedAddress& address) {
        if (!Holds(ReadAddresses(route_, link_, family_), address)) {
            AddAddress(route_, link_, address);
        }
    }

    // A gateway of the former network is not reachable any more.
    void TryToAdd(const DefaultRoute& route) {
        try {
            AddDefaultRoute(route_, link_, route);
        } catch (const SystemFailure&) {
            return;
        }
    }

    Socket& route_;
    const Link& link_;
    Family family_;
    std::vector<AssignedAddress> addresses_;
    std::vector<DefaultRoute> routes_;
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
            throw SystemFailure(failure.Error(), failure.Action(), failure.Right(),
                                std::string("the former settings are not restored: ") +
                                    another.what());
        }
        throw;
    }
}

}  // namespace tavrolinux
