#include "cli/tcpip_settings.h"

#include "cli/validation.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"

namespace tavro {

bool IsValidVlanId(const std::string& vlanId) {
    constexpr std::int32_t HighestVlanId = 4094;
    return IsNumberInRange(vlanId, HighestVlanId);
}

tavroapi::TcpIpSettings SettingsForVlan(const std::string& vlanId) {
    tavroapi::TcpIpSettings settings;
    settings.vlanId = vlanId;
    settings.vlanEnabled = vlanId == "0" ? "No" : "Yes";
    settings.vlanPriority = "0";
    settings.maxFrameSize = "1500";
    return settings;
}

std::optional<tavroapi::TcpIpSettings> SettingsForDhcp(Arguments arguments, std::size_t position) {
    if (!CanDoOperation() || position >= arguments.size()) {
        return std::nullopt;
    }
    const std::string vlanId = arguments[position];
    if (!IsValidVlanId(vlanId)) {
        ShowMessage(MessageId::InvalidVlanId);
        return std::nullopt;
    }
    return SettingsForVlan(vlanId);
}

std::optional<tavroapi::TcpIpSettings> SettingsForStaticIPv4(const std::string& vlanId,
                                                             const std::string& address,
                                                             const std::string& subnetMask,
                                                             const std::string& gateway) {
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
