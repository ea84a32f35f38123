#include "simulator/model/from_records.h"

#include <cstddef>

#include "simulator/model/numbers.h"

namespace tavrosim {
namespace {

// The host keeps "0" where there is no VLAN.
std::string VlanIdFrom(const std::string& enabled, const std::string& vlanId) {
    return enabled == "No" ? "0" : vlanId;
}

// Counters that stand in the record in the order of their members.
template <class Statistics, class Record>
Statistics StatisticsFrom(const Record& record) {
    Statistics statistics;
    std::size_t position = 0;
    Statistics::Members([&](const auto&... member) {
        ((statistics.*member.member = CounterFrom(record.texts.at(position++))), ...);
    });
    return statistics;
}

// Items "group:bandwidth" without their groups.
std::string BandwidthsFrom(const std::string& items) {
    std::string bandwidths;
    bool isGroup = true;
    for (const char character : items) {
        if (character == ',') {
            isGroup = true;
            bandwidths += character;
        } else if (isGroup && character == ':') {
            isGroup = false;
        } else if (!isGroup) {
            bandwidths += character;
        }
    }
    return bandwidths;
}

DcbSettings SideFrom(const std::array<std::string, 6>& texts, const std::string& groupMap,
                     const std::string& bandwidths) {
    DcbSettings settings;
    settings.state = texts[0];
    settings.flowControlPriorities = texts[1];
    settings.fcoePriority = texts[2];
    settings.willing = texts[5];
    settings.groupMap = groupMap;
    settings.bandwidths = BandwidthsFrom(bandwidths);
    return settings;
}

}  // namespace

TcpIp TcpIpFrom(const tavroapi::TcpIpSettings& record) {
    TcpIp settings;
    settings.dhcp = record.dhcpEnabled;
    settings.address = record.ipAddress;
    settings.subnetMask = record.subnetMask;
    settings.gateway = record.defaultGateway;
    settings.vlanId = VlanIdFrom(record.vlanEnabled, record.vlanId);
    settings.vlanPriority = record.vlanPriority;
    settings.maxFrameSize = record.maxFrameSize;
    settings.dhcpIPv6 = record.dhcpEnabledIPv6;
    settings.addressIPv6 = record.staticIPv6;
    settings.prefixLengthIPv6 = record.staticPrefixLength;
    settings.gatewayIPv6 = record.gatewayIPv6;
    return settings;
}

TcpIp TcpIpFrom(const tavroapi::IscsiPortRecord& record) {
    namespace iscsi_port = tavroapi::iscsi_port;
    TcpIp settings;
    settings.dhcp = record.texts[iscsi_port::Dhcp];
    settings.address = record.texts[iscsi_port::Address];
    settings.subnetMask = record.texts[iscsi_port::SubnetMask];
    settings.gateway = record.texts[iscsi_port::Gateway];
    settings.vlanId = VlanIdFrom(record.texts[iscsi_port::Vlan], record.texts[iscsi_port::VlanId]);
    settings.vlanPriority = record.texts[iscsi_port::VlanPriority];
    settings.maxFrameSize = record.texts[iscsi_port::MaximumFrameSize];
    settings.dhcpIPv6 = record.texts[iscsi_port::DhcpIPv6];
    settings.addressIPv6 = record.texts[iscsi_port::AddressIPv6];
    settings.prefixLengthIPv6 = record.texts[iscsi_port::PrefixLengthIPv6];
    settings.gatewayIPv6 = record.texts[iscsi_port::GatewayIPv6];
    return settings;
}

IscsiStatistics IscsiStatisticsFrom(const tavroapi::IscsiParameterRecord& record) {
    return StatisticsFrom<IscsiStatistics>(record);
}

FcoeStatistics FcoeStatisticsFrom(const tavroapi::FcoeStatisticsRecord& record) {
    return StatisticsFrom<FcoeStatistics>(record);
}

DcbSettings DcbFrom(const tavroapi::DcbConfig& config) {
    return {config.state,       config.willing,          config.priorities, config.fcoePriority,
            config.priorityMap, config.priorityGroupMap, config.bandwidth};
}

DcbSettings LocalDcbFrom(const tavroapi::DcbInfo& info) {
    return SideFrom(info.local, info.localGroupMap, info.localBandwidths);
}

DcbSettings PeerDcbFrom(const tavroapi::DcbInfo& info) {
    return SideFrom(info.peer, info.peerGroupMap, info.peerBandwidths);
}

}  // namespace tavrosim
