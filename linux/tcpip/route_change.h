#pragma once

#include <optional>
#include <string>
#include <vector>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"
#include "linux/netlink/routes.h"
#include "linux/system/failure.h"
#include "linux/tcpip/attempts.h"

namespace tavrolinux {

// Keeping the routes of one family through an interface while its addresses change, and changing
// the gateway that the read-out shows. Members throw SystemFailure.
class RouteChange {
  public:
    // Notes what is there, of all tables, and does not follow from the addresses; also the routes
    // through other interfaces whose preferred source is one of the addresses, or the wanted one.
    RouteChange(Socket& route, const Link& link, Family family,
                const std::vector<AssignedAddress>& addresses, const IpAddress& wanted);

    // Whether the gateway is to change and is one of several next hops of the default route, which
    // no single gateway can take the place of.
    bool IsOneOfSeveral(const IpAddress& gateway) const;

    // The interface of another default route with the metric that the gateway would get: the kernel
    // has one of them only.
    std::optional<std::int32_t> InterfaceInTheWayOf(const IpAddress& gateway) const;

    // A route among equals through other interfaces, some of which stand before it and some behind:
    // that is no place to which it could be brought back. Null without one.
    const Route* OneBetweenOthers() const;

    // Makes anew what has gone with addresses, with `wanted` as the preferred source where that was
    // `replaced`. The default route that is to have another gateway is left out. Returns why which
    // routes cannot be made anew.
    std::vector<std::string> Restore(const std::optional<IpAddress>& replaced,
                                     const IpAddress& wanted, const IpAddress& gateway);

    // Puts the gateway (all zeros for none) in the place of the one that was shown.
    void ReplaceGateway(const IpAddress& gateway);

    // Puts back what was there, once the addresses are what they were. What others have added
    // stays.
    void Undo(Attempts& attempts);

  private:
    std::vector<Route> Now() const { return ReadRoutes(route_, link_, family_, sources_); }
    void RemoveLeftOf(const Route& former, const std::vector<Route>& now);
    std::vector<SystemFailure> MakeAnew(std::vector<Route> missing);
    bool Keeps(const IpAddress& gateway) const;
    bool IsOwn(const Route& route) const;
    std::uint32_t WantedMetric() const { return shown_ == nullptr ? 0 : shown_->metric; }

    Socket& route_;
    const Link& link_;
    Family family_;
    std::vector<IpAddress> sources_;
    std::vector<Route> former_;
    std::vector<Route> added_;
    const Route* shown_ = nullptr;  // among the former ones; null where there was no default route
};

}  // namespace tavrolinux
