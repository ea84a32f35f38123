// The TCP/IP settings of an iSCSI function.
#include "iscsi/tcpip.h"

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

}  // namespace

void SetIscsiTcpIpByDhcp(const std::string& mac, Arguments arguments) {
    auto settings = SettingsForDhcp(arguments, 5);
    if (!settings) {
        return;
    }
    settings->dhcpEnabled = "Yes";
    settings->dhcpEnabledIPv6 = "No";
    settings->staticIPv6 = PlaceholderIPv6;
    settings->staticPrefixLength = PlaceholderPrefixLength;
    settings->gatewayIPv6 = NoGatewayIPv6;
    Apply(mac, *settings);
}

void SetIscsiTcpIpStatically(const std::string& mac, Arguments arguments) {
    auto settings = SettingsForStaticIPv4(ArgumentAt(arguments, 5), ArgumentAt(arguments, 6),
                                          ArgumentAt(arguments, 7), ArgumentAt(arguments, 8));
    if (settings) {
        settings->staticPrefixLength = PlaceholderPrefixLength;
        Apply(mac, *settings);
    }
}

}  // namespace tavro
