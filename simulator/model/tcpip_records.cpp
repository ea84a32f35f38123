// The TCP/IP settings of the host and those of the contract, in both directions.
#include "simulator/model/tcpip_records.h"

#include "library/records/port_tcpip.h"
#include "simulator/model/from_records.h"

namespace tavrosim {
namespace {

using tavroapi::TcpIpSettings;

// The VLAN is told in two fields.
struct SettingPair {
    std::string TcpIp::*setting;
    std::string TcpIpSettings::*field;
};
constexpr SettingPair SettingPairs[] = {
    {&TcpIp::dhcp, &TcpIpSettings::dhcpEnabled},
    {&TcpIp::address, &TcpIpSettings::ipAddress},
    {&TcpIp::subnetMask, &TcpIpSettings::subnetMask},
    {&TcpIp::gateway, &TcpIpSettings::defaultGateway},
    {&TcpIp::vlanId, &TcpIpSettings::vlanId},
    {&TcpIp::vlanPriority, &TcpIpSettings::vlanPriority},
    {&TcpIp::maxFrameSize, &TcpIpSettings::maxFrameSize},
    {&TcpIp::dhcpIPv6, &TcpIpSettings::dhcpEnabledIPv6},
    {&TcpIp::addressIPv6, &TcpIpSettings::staticIPv6},
    {&TcpIp::prefixLengthIPv6, &TcpIpSettings::staticPrefixLength},
    {&TcpIp::gatewayIPv6, &TcpIpSettings::gatewayIPv6},
};

constexpr const char* NoVlan = "0";

}  // namespace

TcpIpSettings RecordOf(const TcpIp& settings) {
    TcpIpSettings record;
    for (const auto& [setting, field] : SettingPairs) {
        record.*field = settings.*setting;
    }
    record.vlanEnabled = settings.vlanId == NoVlan ? "No" : "Yes";
    return record;
}

TcpIp TcpIpFrom(const TcpIpSettings& record) {
    TcpIp settings;
    for (const auto& [setting, field] : SettingPairs) {
        settings.*setting = record.*field;
    }
    if (record.vlanEnabled == "No") {
        settings.vlanId = NoVlan;
    }
    return settings;
}

TcpIp TcpIpFrom(const tavroapi::IscsiPortRecord& record) {
    return TcpIpFrom(tavrolib::TcpIpOf(record));
}

}  // namespace tavrosim
