#include "linux/tcpip/static_settings.h"

#include <cerrno>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "library/text/text.h"
#include "linux/inventory/ip_settings.h"
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

std::string Joined(const std::string& text, const std::string& other) {
    return text.empty() || other.empty() ? text + other : text + "; " + other;
}

// Returns what is to be said where it fails.
std::string Undo(AddressChange& addresses, RouteChange& routes) {
    // A step that fails by chance is made the next time.
    constexpr int Times = 3;
    std::string failed;
    for (int time = 0; time < Times; ++time) {
        Attempts attempts;
        addresses.Undo(attempts);
        attempts([&] { routes.Undo(attempts); });
        if (attempts.Failures().empty()) {
            return {};
        }
        failed.clear();
        for (const std::string& one : attempts.Failures()) {
            failed = Joined(failed, one);
        }
    }
    return "the former settings are not restored: " + failed;
}

// Whether no address has to go for the wanted one.
bool IsShown(const StaticSettings& wanted, const std::vector<AssignedAddress>& addresses) {
    const std::optional<AssignedAddress> shown = ShownAddress(addresses);
    return shown ? shown->address == wanted.address && shown->prefixLength == wanted.prefixLength
                 : wanted.address.IsZero();
}

tavrolib::Outcome RefuseForRoutes(const std::string& details) {
    return Refused(tavrolib::Status::SystemRefused, L"Routes would go with the former address.",
                   L"First change or remove the routes that stand in the details.",
                   tavrolib::WideFromUtf8(details));
}

// The refusal of what could not be made, or not be taken back.
std::optional<tavrolib::Outcome> RefuseBefore(Socket& route, const Link& link,
                                              const StaticSettings& wanted,
                                              const AddressChange& addresses,
                                              const RouteChange& routes) {
    if (routes.IsOneOfSeveral(wanted.gateway)) {
        return Refused(tavrolib::Status::NotOffered, L"The default route has several next hops.",
                       L"Give the same gateway, or change the route with the host's own tools.",
                       tavrolib::WideFromUtf8(link.name));
    }
    if (const auto interface = routes.InterfaceInTheWayOf(wanted.gateway)) {
        return Refused(tavrolib::Status::SystemRefused,
                       L"There is another default route of the same metric.",
                       L"First change or remove the default route of the interface in the details.",
                       tavrolib::WideFromUtf8(ReadLink(route, *interface).name));
    }
    const Route* const between = routes.OneBetweenOthers();
    if (between != nullptr && !IsShown(wanted, addresses.Former())) {
        return RefuseForRoutes(between->Text() + " stands between those of other interfaces");
    }
    return std::nullopt;
}

}  // namespace

tavrolib::Outcome ApplyStaticSettings(Socket& route, const Link& link,
                                      const StaticSettings& wanted) {
    AddressChange addresses(route, link, wanted.address.family);
    RouteChange routes(route, link, wanted.address.family, addresses.Former(), wanted.address);
    if (auto refusal = RefuseBefore(route, link, wanted, addresses, routes)) {
        return *refusal;
    }
    std::vector<std::string> lost;
    try {
        lost = Change(addresses, routes, link, wanted);
    } catch (const AddressTaken& taken) {
        return Refused(tavrolib::Status::SystemRefused, L"Another host has this address.",
                       L"Give an address that is still free.",
                       tavrolib::WideFromUtf8(Joined(taken.what(), Undo(addresses, routes))));
    } catch (const SystemFailure& failure) {
        throw SystemFailure(failure.Error(), failure.Action(), failure.Right(),
                            Joined(failure.Reason(), Undo(addresses, routes)));
    } catch (const std::exception& failure) {
        const std::string reason = Joined(failure.what(), Undo(addresses, routes));
        throw SystemFailure(ENOMEM, "changing the address of " + link.name, NetworkRight, reason);
    }
    if (lost.empty()) {
        return tavrolib::Done();
    }
    std::string details = Undo(addresses, routes);
    for (const std::string& one : lost) {
        details = Joined(details, one);
    }
    return RefuseForRoutes(details);
}

}  // namespace tavrolinux
