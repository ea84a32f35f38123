// The TCP/IP settings of an Ethernet function.
#include "ethernet/commands.h"

#include "cli/invocation.h"
#include "cli/tcpip_settings.h"
#include "cli/validation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/codes.h"

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

// Any word but "-ipv4" selects IPv6.
bool AddressesIPv4(const Invocation& invocation) {
    return invocation.Text(operand::IPv4Family) == operand::IPv4Family.name;
}

void Apply(const std::string& mac, TcpIpSettings& settings) {
    if (DoOperation<OperationCode::SetEthernetTcpIp>(mac, settings) != CallOutcome::Done) {
        ShowFailure(MessageId::TcpIpFailed);
        return;
    }
    if (settings.result == 0) {
        ShowMessage(MessageId::TcpIpApplied);
    } else if (settings.result == tavroapi::AppliedAtRestart) {
        ShowMessage(MessageId::TcpIpAppliedAtRestart);
    }
}

void SetIPv4Statically(const Invocation& invocation) {
    auto settings = SettingsForStaticIPv4(invocation);
    if (settings) {
        settings->ipVersion = "1";
        Apply(invocation.port, *settings);
    }
}

void SetIPv6Statically(const Invocation& invocation) {
    const bool hasPrefixLength = invocation.Has(operand::PrefixLength);
    const bool hasGateway = invocation.Has(operand::IPv6Gateway);
    const std::string vlanId = invocation.Text(operand::VlanId);
    const std::string address = invocation.Text(operand::IPv6Address);
    const std::string prefixLength =
        hasPrefixLength ? invocation.Text(operand::PrefixLength) : DefaultPrefixLength;
    const std::string gateway = hasGateway ? invocation.Text(operand::IPv6Gateway) : NoAddressIPv6;
    if (!IsValidIPv6(address)) {
        ShowMessage(MessageId::InvalidAddress);
        return;
    }
    if (!IsValidVlanId(vlanId)) {
        ShowMessage(MessageId::InvalidVlanId);
        return;
    }
    if (hasPrefixLength && !IsNumberInRange(prefixLength, operand::PrefixLength.highest)) {
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
    Apply(invocation.port, settings);
}

// Shows the VLAN, IPv4 and IPv6 settings of an Ethernet function.
void ShowEthernetTcpIp(const Invocation& invocation) {
    TcpIpSettings settings;
    if (DoOperation<OperationCode::ReadEthernetTcpIp>(invocation.port, settings) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::IscsiPortInfoFailed, "");
        return;
    }
    ShowMessage(MessageId::TcpIpTitle, invocation.port, Layout::Title);
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

// Has an Ethernet function take its address by DHCP. Without a VLAN ID, or without the library's
// entry point, nothing happens.
void SetEthernetTcpIpByDhcp(const Invocation& invocation) {
    auto settings = SettingsForDhcp(invocation);
    if (!settings) {
        return;
    }
    if (AddressesIPv4(invocation)) {
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
    Apply(invocation.port, *settings);
}

// Gives an Ethernet function a fixed address.
void SetEthernetTcpIpStatically(const Invocation& invocation) {
    if (AddressesIPv4(invocation)) {
        SetIPv4Statically(invocation);
    } else {
        SetIPv6Statically(invocation);
    }
}

}  // namespace

std::span<const Command> EthernetTcpIpCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{59},
         .form = {"-ethernet", operand::PortMac, "-gettcpip"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadEthernetTcpIp,
         .handler = ShowEthernetTcpIp},
        {.code = CommandCode{60},
         .form = {"-ethernet", operand::PortMac, "-modifytcpip", operand::IPv4Family, "-dhcp",
                  Uncounted(operand::VlanId)},
         .otherForm = {"-ethernet", operand::PortMac, "-modifytcpip", operand::IPv6Family, "-dhcp",
                       Uncounted(operand::VlanId)},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::SetEthernetTcpIp,
         .handler = SetEthernetTcpIpByDhcp},
        {.code = CommandCode{61},
         .form = {"-ethernet", operand::PortMac, "-modifytcpip", operand::IPv4Family, "-static",
                  Uncounted(operand::VlanId), Uncounted(operand::IPv4Address),
                  Uncounted(operand::SubnetMask), Uncounted(operand::IPv4Gateway)},
         .otherForm = {"-ethernet", operand::PortMac, "-modifytcpip", operand::IPv6Family,
                       "-static", Uncounted(operand::VlanId), Uncounted(operand::IPv6Address),
                       Optional(operand::PrefixLength), Optional(operand::IPv6Gateway)},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::SetEthernetTcpIp,
         .handler = SetEthernetTcpIpStatically},
    };
    return Rows;
}

}  // namespace tavro
