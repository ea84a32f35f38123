// The TCP/IP settings of Ethernet functions.
#include <linux/netlink.h>

#include <charconv>
#include <optional>
#include <string>

#include "linux/inventory/ip_settings.h"
#include "linux/serve/operation.h"
#include "linux/serve/turn.h"
#include "linux/system/attribute.h"
#include "linux/system/blocked_signals.h"
#include "linux/tcpip/network_manager.h"
#include "linux/tcpip/static_settings.h"
#include "tavroapi/tcpip_records.h"

namespace tavrolinux {
namespace {

using tavroapi::OperationCode;
using tavroapi::TcpIpSettings;

constexpr std::uint32_t LongestPrefixIPv6 = 128;

Outcome LeftToManager(const wchar_t* what) {
    return Refused(Status::NotOffered, L"This host cannot do that.",
                   L"Set it up with the host's network manager.", what);
}

// An address of the family in the record; empty counts as zeros.
std::optional<IpAddress> AddressOf(Family family, const std::string& text) {
    if (text.empty()) {
        return IpAddress{family, {}};
    }
    const std::optional<IpAddress> address = IpAddressFrom(text);
    return address && address->family == family ? address : std::nullopt;
}

std::optional<std::uint32_t> PrefixLengthFrom(const std::string& text) {
    std::uint32_t length = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, length);
    return error == std::errc() && stop == end && length <= LongestPrefixIPv6
               ? std::optional(length)
               : std::nullopt;
}

// The refusal of an interface that is part of another one.
std::optional<Outcome> RefusePart(Socket& route, const Link& link) {
    if (link.master == 0) {
        return std::nullopt;
    }
    const Link master = ReadLink(route, link.master);
    const std::wstring details = WideFromUtf8(link.name + ": " + master.name);
    // The address of what is part of a VRF is its own, but its routes belong to that.
    return master.kind == "vrf"
               ? Refused(Status::ManagedElsewhere, L"The interface is part of another one.",
                         L"Set it up with the host's network manager.", details)
               : Refused(Status::ManagedElsewhere, L"The interface is part of another one.",
                         L"Give the address to the interface that stands in the details.", details);
}

Outcome Change(const Place& at, const StaticSettings& wanted) {
    const auto turn = TakeTurn(at.machine.SystemRoots());
    Socket route(NETLINK_ROUTE);
    const Link link = ReadLink(route, at.interface.index);
    if (auto refusal = RefusePart(route, link)) {
        return *refusal;
    }
    const BlockedSignals blocked;
    return ApplyStaticSettings(route, link, wanted);
}

Outcome RefusePrefix(bool isIPv4, const std::string& text) {
    return isIPv4 ? Refused(Status::AddressInvalid, L"The text is no subnet mask or prefix length.",
                            L"Give a mask of leading one bits, such as 255.255.255.0.",
                            tavrolib::Quoted(text))
                  : Refused(Status::AddressInvalid, L"The text is no subnet mask or prefix length.",
                            L"Give a prefix length from 1 to 128.", tavrolib::Quoted(text));
}

// What the record wants of the family that it names, or the refusal of what it says.
struct Wanted {
    StaticSettings settings;
    std::optional<Outcome> refusal;
};

Wanted WantedOf(const TcpIpSettings& record) {
    const bool isIPv4 = record.ipVersion == "1";
    const Family family = isIPv4 ? Family::IPv4 : Family::IPv6;
    const std::string& addressText = isIPv4 ? record.ipAddress : record.staticIPv6;
    const std::string& gatewayText = isIPv4 ? record.defaultGateway : record.gatewayIPv6;
    const std::string& prefixText = isIPv4 ? record.subnetMask : record.staticPrefixLength;
    const auto address = AddressOf(family, addressText);
    const auto gateway = AddressOf(family, gatewayText);
    if (!address || !gateway) {
        return {
            {},
            tavrolib::NotAnAddress(Status::AddressInvalid, address ? gatewayText : addressText)};
    }
    const auto mask = isIPv4 ? AddressOf(family, prefixText) : std::nullopt;
    const auto prefix =
        isIPv4 ? (mask ? PrefixLengthOf(*mask) : std::nullopt) : PrefixLengthFrom(prefixText);
    const std::uint32_t length = prefix ? *prefix : 0;
    const bool isForHost = address->IsForHost() && (length == 0 || !address->IsForAll(length));
    if (!address->IsZero() && !isForHost) {
        return {{},
                Refused(Status::AddressInvalid, L"An interface cannot have this address.",
                        L"Give the address of a single host that others can reach.",
                        tavrolib::Quoted(addressText))};
    }
    if (!address->IsZero() && length == 0) {
        return {{}, RefusePrefix(isIPv4, prefixText)};
    }
    return {{*address, length, *gateway}, std::nullopt};
}

Outcome SetEthernetTcpIp(const Place& at, TcpIpSettings& record) {
    if ((record.ipVersion == "1" ? record.dhcpEnabled : record.dhcpEnabledIPv6) == "Yes") {
        return LeftToManager(L"a DHCP client");
    }
    if (record.vlanEnabled == "Yes") {
        return LeftToManager(L"a VLAN, which is an interface of its own");
    }
    const Wanted wanted = WantedOf(record);
    if (wanted.refusal) {
        return *wanted.refusal;
    }
    if (const auto manager = ManagerOf(at.machine.SystemRoots(), at.interface)) {
        return Refused(Status::ManagedElsewhere, L"This interface belongs to a network manager.",
                       L"Change the address there, or take the interface out of its hands.",
                       WideFromUtf8(at.interface.name + ": " + *manager));
    }
    if (record.ipVersion != "1" &&
        ReadAttribute(at.machine.SystemRoots().proc / "sys/net/ipv6/conf" / at.interface.name /
                      "disable_ipv6") == "1") {
        return Refused(Status::NotOffered, L"This host cannot do that.",
                       L"See the details for what is missing.",
                       L"IPv6, which is switched off on " + WideFromUtf8(at.interface.name));
    }
    Outcome outcome = Change(at, wanted.settings);
    if (outcome.IsDone()) {
        record.result = 0;
    }
    return outcome;
}

Outcome SetIscsiTcpIp(const Place& at, const TcpIpSettings& /*record*/) {
    return tavrolib::AddressOfInterface(at.interface.name);
}

Outcome ReadEthernetTcpIp(const Place& at, TcpIpSettings& record) {
    Socket route(NETLINK_ROUTE);
    record = ReadIpSettings(route, ReadLink(route, at.interface.index));
    // Nobody shows this; whoever rehearses a change of the address has to know it.
    record.libraryText13 = ManagerOf(at.machine.SystemRoots(), at.interface).value_or("");
    return Done();
}

}  // namespace

std::span<const Operation> TcpIpOperations() {
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::SetIscsiTcpIp, FunctionKind::Iscsi, SetIscsiTcpIp>(),
        OnFunction<OperationCode::SetEthernetTcpIp, FunctionKind::Ethernet, SetEthernetTcpIp>(),
        OnFunction<OperationCode::ReadEthernetTcpIp, FunctionKind::Ethernet, ReadEthernetTcpIp>(),
    };
    return Rows;
}

}  // namespace tavrolinux
