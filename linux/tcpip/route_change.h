#pragma once

#include <optional>
#include <string>
#include <vector>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"
#include "linux/netlink/routes.h"

namespace tavrolinux {

// Keeping the routes of one family through an interface while its addresses change, and changing
// the gateway that the read-out shows. Members throw SystemFailure.
class RouteChange {
  public:
    // Notes what is there, of all tables; also the routes through other interfaces whose preferred
    // source is one of the addresses, or the wanted one.
    RouteChange(Socket& route, const Link& link, Family family,
                const std::vector<AssignedAddress>& addresses, const IpAddress& wanted);

    // Whether the gateway is to change and is one of several next hops of the default route, which
    // no single gateway can take the place of.
    bool IsOneOfSeveral(const IpAddress& gateway) const;

    // Makes anew what has gone with addresses, with `wanted` as the preferred source where that was
    // `replaced`. The default route that is to have another gateway is left out. Returns why which
    // routes cannot be made anew.
    std::vector<std::string> Restore(const std::optional<IpAddress>& replaced,
                                     const IpAddress& wanted, const IpAddress& gateway);

    // Puts the gateway (all zeros for none) in the place of the one that was shown.
    void ReplaceGateway(const IpAddress& gateway);

    // Puts back what was there, once the addresses are what they were.
    void Undo();

  private:
    std::vector<Route> Now() const { return ReadRoutes(route_, link_, family_, sources_); }
    void RemoveLeftOf(const Route& former, const std::vector<Route>& now);
    std::vector<std::string> MakeAnew(std::vector<Route> missing);
    bool Keeps(const IpAddress& gateway) const;

    Socket& route_;
    const Link& link_;
    Family family_;
    std::vector<IpAddress> sources_;
    std::vector<Route> former_;
    const Route* shown_;  // among the former ones; null where there was no default route
};

}  // namespace tavrolinux
