#include "cli/tcpip_settings.h"

#include "cli/validation.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"

namespace tavro {

bool IsValidVlanId(const std::string& vlanId) {
    return IsNumberInRange(vlanId, operand::VlanId.highest);
}

tavroapi::TcpIpSettings SettingsForVlan(const std::string& vlanId) {
    tavroapi::TcpIpSettings settings;
    settings.vlanId = vlanId;
    settings.vlanEnabled = vlanId == "0" ? "No" : "Yes";
    settings.vlanPriority = "0";
    settings.maxFrameSize = "1500";
    return settings;
}

std::optional<tavroapi::TcpIpSettings> SettingsForDhcp(const Invocation& invocation) {
    if (!CanDoOperation() || !invocation.Has(operand::VlanId)) {
        return std::nullopt;
    }
    const std::string vlanId = invocation.Text(operand::VlanId);
    if (!IsValidVlanId(vlanId)) {
        ShowMessage(MessageId::InvalidVlanId);
        return std::nullopt;
    }
    return SettingsForVlan(vlanId);
}

std::optional<tavroapi::TcpIpSettings> SettingsForStaticIPv4(const Invocation& invocation) {
    const std::string vlanId = invocation.Text(operand::VlanId);
    const std::string address = invocation.Text(operand::IPv4Address);
    const std::string subnetMask = invocation.Text(operand::SubnetMask);
    const std::string gateway = invocation.Text(operand::IPv4Gateway);
    const struct {
        bool valid;
        MessageId refusal;
    } checks[] = {
        {IsValidIPv4(address), MessageId::InvalidAddress},
        {IsValidVlanId(vlanId), MessageId::InvalidVlanId},
        {IsValidIPv4(subnetMask), MessageId::InvalidSubnetMask},
        {IsValidIPv4(gateway), MessageId::InvalidGateway},
    };
    for (const auto& check : checks) {
        if (!check.valid) {
            ShowMessage(check.refusal);
            return std::nullopt;
        }
    }
    tavroapi::TcpIpSettings settings = SettingsForVlan(vlanId);
    settings.dhcpEnabled = "No";
    settings.ipAddress = address;
    settings.subnetMask = subnetMask;
    settings.defaultGateway = gateway;
    return settings;
}

}  // namespace tavro
