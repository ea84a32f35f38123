#include "linux/inventory/ip_settings.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <string>

#include "linux/netlink/routes.h"

namespace tavrolinux {
namespace {

// What one family has, in texts.
struct FamilySettings {
    std::string isLeased;
    IpAddress address;
    std::optional<std::uint32_t> prefixLength;
    IpAddress gateway;
    std::string linkLocal;
};

FamilySettings ReadFamily(Socket& route, const Link& link, Family family) {
    FamilySettings settings{"No", {family, {}}, std::nullopt, {family, {}}, {}};
    const std::vector<AssignedAddress> addresses = ReadAddresses(route, link, family);
    if (const auto shown = ShownAddress(addresses)) {
        settings.isLeased = shown->isPermanent ? "No" : "Yes";
        settings.address = shown->address;
        settings.prefixLength = shown->prefixLength;
    }
    const auto linkLocal =
        std::ranges::find(addresses, std::uint8_t{RT_SCOPE_LINK}, &AssignedAddress::scope);
    if (linkLocal != addresses.end()) {
        settings.linkLocal = TextOf(linkLocal->address);
    }
    const std::vector<Route> routes = ReadRoutes(route, link, family);
    if (const Route* const counting = DefaultRoute(routes)) {
        settings.gateway = *counting->gateway;
    }
    return settings;
}

}  // namespace

std::optional<AssignedAddress> ShownAddress(const std::vector<AssignedAddress>& addresses) {
    const AssignedAddress* shown = nullptr;
    for (const AssignedAddress& address : addresses) {
        const bool isShowable = address.scope == RT_SCOPE_UNIVERSE && !address.isTemporary;
        if (isShowable && (shown == nullptr || (address.isPermanent && !shown->isPermanent))) {
            shown = &address;
        }
    }
    return shown == nullptr ? std::nullopt : std::optional(*shown);
}

tavroapi::TcpIpSettings ReadIpSettings(Socket& route, const Link& link) {
    constexpr std::uint32_t UsualPrefixLength = 64;
    const FamilySettings ipv4 = ReadFamily(route, link, Family::IPv4);
    const FamilySettings ipv6 = ReadFamily(route, link, Family::IPv6);
    tavroapi::TcpIpSettings settings;
    settings.dhcpEnabled = ipv4.isLeased;
    settings.ipAddress = TextOf(ipv4.address);
    settings.subnetMask = MaskText(ipv4.prefixLength.value_or(0));
    settings.defaultGateway = TextOf(ipv4.gateway);
    settings.vlanEnabled = "No";
    settings.vlanId = "0";
    settings.dhcpEnabledIPv6 = ipv6.isLeased;
    settings.staticIPv6 = TextOf(ipv6.address);
    settings.staticPrefixLength = std::to_string(ipv6.prefixLength.value_or(UsualPrefixLength));
    settings.gatewayIPv6 = TextOf(ipv6.gateway);
    settings.linkLocalIPv6 = ipv6.linkLocal;
    return settings;
}

}  // namespace tavrolinux
