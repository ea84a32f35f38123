// The TCP/IP settings of an Ethernet function.
#include "ethernet/tcpip.h"

#include "cli/tcpip_settings.h"
#include "cli/validation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"

namespace tavro {

using tavroapi::OperationCode;
using tavroapi::TcpIpSettings;

namespace {

constexpr Row<TcpIpSettings> VlanRows[] = {
    {MessageId::VlanEnabled, &TcpIpSettings::vlanEnabled},
    {MessageId::VlanId, &TcpIpSettings::vlanId},
};

constexpr Row<TcpIpSettings> IPv4Rows[] = {
    {MessageId::IPv4DhcpEnabled, &TcpIpSettings::dhcpEnabled},
    {MessageId::IPv4Address, &TcpIpSettings::ipAddress},
    {MessageId::IPv4SubnetMask, &TcpIpSettings::subnetMask},
    {MessageId::IPv4Gateway, &TcpIpSettings::defaultGateway},
};

constexpr Row<TcpIpSettings> IPv6Rows[] = {
    {MessageId::IPv6Address, &TcpIpSettings::staticIPv6},
    {MessageId::IPv6PrefixLength, &TcpIpSettings::staticPrefixLength},
    {MessageId::IPv6Gateway, &TcpIpSettings::gatewayIPv6},
};

constexpr const char* NoAddressIPv6 = "0000:0000:0000:0000:0000:0000:0000:0000";
constexpr const char* DefaultPrefixLength = "64";
constexpr std::int32_t LongestPrefix = 128;

constexpr std::uint32_t AppliedAtRestart = 201;

// Any word but "-ipv4" selects IPv6.
bool AddressesIPv4(Arguments arguments) {
    return ArgumentAt(arguments, 4) == "-ipv4";
}

void Apply(const std::string& mac, TcpIpSettings& settings) {
    if (DoOperation<OperationCode::SetEthernetTcpIp>(mac, settings) != CallOutcome::Done) {
        ShowFailure(MessageId::TcpIpFailed);
        return;
    }
    if (settings.result == 0) {
        ShowMessage(MessageId::TcpIpApplied);
    } else if (settings.result == AppliedAtRestart) {
        ShowMessage(MessageId::TcpIpAppliedAtRestart);
    }
}

void SetIPv4Statically(const std::string& mac, Arguments arguments) {
    auto settings = SettingsForStaticIPv4(ArgumentAt(arguments, 6), ArgumentAt(arguments, 7),
                                          ArgumentAt(arguments, 8), ArgumentAt(arguments, 9));
    if (settings) {
        settings->ipVersion = "1";
        Apply(mac, *settings);
    }
}

void SetIPv6Statically(const std::string& mac, Arguments arguments) {
    const bool hasPrefixLength = arguments.size() > 8;
    const bool hasGateway = arguments.size() > 9;
    const std::string vlanId = ArgumentAt(arguments, 6);
    const std::string address = ArgumentAt(arguments, 7);
    const std::string prefixLength =
        hasPrefixLength ? ArgumentAt(arguments, 8) : DefaultPrefixLength;
    const std::string gateway = hasGateway ? ArgumentAt(arguments, 9) : NoAddressIPv6;
    if (!IsValidIPv6(address)) {
        ShowMessage(MessageId::InvalidAddress);
        return;
    }
    if (!IsValidVlanId(vlanId)) {
        ShowMessage(MessageId::InvalidVlanId);
        return;
    }
    if (hasPrefixLength && !IsNumberInRange(prefixLength, LongestPrefix)) {
        ShowMessage(MessageId::InvalidPrefixLength);
        return;
    }
    if (hasGateway && !IsValidIPv6(gateway)) {
        ShowMessage(MessageId::InvalidGateway);
        return;
    }
    TcpIpSettings settings = SettingsForVlan(vlanId);
    settings.ipVersion = "0";
    settings.dhcpEnabledIPv6 = "No";
    settings.staticIPv6 = address;
    settings.staticPrefixLength = prefixLength;
    settings.gatewayIPv6 = gateway;
    Apply(mac, settings);
}

}  // namespace

void ShowEthernetTcpIp(const std::string& mac) {
    TcpIpSettings settings;
    if (DoOperation<OperationCode::ReadEthernetTcpIp>(mac, settings) != CallOutcome::Done) {
        ShowFailure(MessageId::IscsiPortInfoFailed, "");
        return;
    }
    ShowMessage(MessageId::TcpIpTitle, mac, Layout::Title);
    ShowMessage(MessageId::VlanSection, "", Layout::Section);
    ShowRows(settings, VlanRows);
    ShowMessage(MessageId::IPv4Section, "", Layout::Section);
    ShowRows(settings, IPv4Rows);
    ShowMessage(MessageId::IPv6Section, "", Layout::Section);
    ShowMessage(MessageId::IPv6DhcpEnabled, settings.dhcpEnabledIPv6, Layout::Row);
    if (!settings.linkLocalIPv6.empty()) {
        ShowMessage(MessageId::IPv6LinkLocalAddress, settings.linkLocalIPv6, Layout::Row);
    }
    ShowRows(settings, IPv6Rows);
    ShowClosingRules();
}

void SetEthernetTcpIpByDhcp(const std::string& mac, Arguments arguments) {
    auto settings = SettingsForDhcp(arguments, 6);
    if (!settings) {
        return;
    }
    if (AddressesIPv4(arguments)) {
        settings->ipVersion = "1";
        settings->dhcpEnabled = "Yes";
        settings->dhcpEnabledIPv6 = "No";
    } else {
        settings->ipVersion = "0";
        settings->dhcpEnabledIPv6 = "Yes";
    }
    settings->staticIPv6 = NoAddressIPv6;
    settings->gatewayIPv6 = NoAddressIPv6;
    settings->staticPrefixLength = DefaultPrefixLength;
    Apply(mac, *settings);
}

void SetEthernetTcpIpStatically(const std::string& mac, Arguments arguments) {
    if (AddressesIPv4(arguments)) {
        SetIPv4Statically(mac, arguments);
    } else {
        SetIPv6Statically(mac, arguments);
    }
}

}  // namespace tavro
