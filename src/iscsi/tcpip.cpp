// The TCP/IP settings of an iSCSI function.
#include "iscsi/commands.h"

#include "cli/invocation.h"
#include "cli/tcpip_settings.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"

namespace tavro {

namespace {

// These commands set IPv4 only and send these in the IPv6 fields, whatever the port has there.
constexpr const char* PlaceholderIPv6 = "2001:DB8:85A3:42:1000:8A2E:370:7334";
constexpr const char* PlaceholderPrefixLength = "124";
constexpr const char* NoGatewayIPv6 = "0:0:0:0:0:0:0:0";

void Apply(const std::string& mac, tavroapi::TcpIpSettings& settings) {
    if (DoOperation<tavroapi::OperationCode::SetIscsiTcpIp>(mac, settings) == CallOutcome::Done) {
        ShowMessage(MessageId::TcpIpApplied);
    } else {
        ShowFailure(MessageId::TcpIpFailed);
    }
}

// Has an iSCSI function take its IPv4 address by DHCP. Without a VLAN ID, or without the library's
// entry point, nothing happens.
void SetIscsiTcpIpByDhcp(const Invocation& invocation) {
    auto settings = SettingsForDhcp(invocation);
    if (!settings) {
        return;
    }
    settings->dhcpEnabled = "Yes";
    settings->dhcpEnabledIPv6 = "No";
    settings->staticIPv6 = PlaceholderIPv6;
    settings->staticPrefixLength = PlaceholderPrefixLength;
    settings->gatewayIPv6 = NoGatewayIPv6;
    Apply(invocation.port, *settings);
}

// Gives an iSCSI function a fixed IPv4 address.
void SetIscsiTcpIpStatically(const Invocation& invocation) {
    auto settings = SettingsForStaticIPv4(invocation);
    if (settings) {
        settings->staticPrefixLength = PlaceholderPrefixLength;
        Apply(invocation.port, *settings);
    }
}

}  // namespace

std::span<const Command> IscsiTcpIpCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{22},
         .form = {"-iscsi", operand::PortMac, "-modifytcpip", "-dhcp", Uncounted(operand::VlanId)},
         .access = AccessClass::Runs,
         .decidedBy = tavroapi::OperationCode::SetIscsiTcpIp,
         .handler = SetIscsiTcpIpByDhcp},
        {.code = CommandCode{23},
         .form = {"-iscsi", operand::PortMac, "-modifytcpip", "-static", operand::VlanId,
                  operand::IPv4Address, operand::SubnetMask, Uncounted(operand::IPv4Gateway)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = tavroapi::OperationCode::SetIscsiTcpIp,
         .handler = SetIscsiTcpIpStatically},
    };
    return Rows;
}

}  // namespace tavro
