#include "linux/tcpip/static_settings.h"

#include <string>
#include <vector>

#include "library/text/text.h"
#include "linux/messages/error_texts.h"
#include "linux/system/failure.h"
#include "linux/tcpip/address_change.h"
#include "linux/tcpip/route_change.h"

namespace tavrolinux {
namespace {

// Makes the change; returns which routes it would lose.
std::vector<std::string> Change(AddressChange& addresses, RouteChange& routes, const Link& link,
                                const StaticSettings& wanted) {
    std::optional<AssignedAddress> address;
    if (!wanted.address.IsZero()) {
        address = NewAddress(link, wanted.address, wanted.prefixLength);
    }
    const std::optional<AssignedAddress> replaced = addresses.Show(address);
    std::vector<std::string> lost = routes.Restore(
        replaced ? std::optional(replaced->address) : std::nullopt, wanted.address, wanted.gateway);
    if (lost.empty()) {
        routes.ReplaceGateway(wanted.gateway);
    }
    return lost;
}

// Returns what is to be said where it fails.
std::string Undo(AddressChange& addresses, RouteChange& routes) {
    try {
        addresses.Undo();
        routes.Undo();
        return {};
    } catch (const SystemFailure& failure) {
        return std::string("the former settings are not restored: ") + failure.what();
    }
}

std::string Joined(const std::string& text, const std::string& other) {
    return text.empty() || other.empty() ? text + other : text + "; " + other;
}

}  // namespace

tavrolib::Outcome ApplyStaticSettings(Socket& route, const Link& link,
                                      const StaticSettings& wanted) {
    AddressChange addresses(route, link, wanted.address.family);
    RouteChange routes(route, link, wanted.address.family, addresses.Former(), wanted.address);
    if (routes.IsOneOfSeveral(wanted.gateway)) {
        return Refused(tavrolib::Status::NotOffered, L"The default route has several next hops.",
                       L"Give the same gateway, or change the route with the host's own tools.",
                       tavrolib::WideFromUtf8(link.name));
    }
    std::vector<std::string> lost;
    try {
        lost = Change(addresses, routes, link, wanted);
    } catch (const SystemFailure& failure) {
        throw SystemFailure(failure.Error(), failure.Action(), failure.Right(),
                            Joined(failure.Reason(), Undo(addresses, routes)));
    }
    if (lost.empty()) {
        return tavrolib::Done();
    }
    std::string details = Undo(addresses, routes);
    for (const std::string& one : lost) {
        details = Joined(details, one);
    }
    return Refused(tavrolib::Status::SystemRefused, L"Routes would go with the former address.",
                   L"First change or remove the routes that stand in the details.",
                   tavrolib::WideFromUtf8(details));
}

}  // namespace tavrolinux
