#pragma once

#include <cstddef>
#include <iterator>
#include <string>

#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/tcpip_records.h"

// An iSCSI port tells its TCP/IP settings in its own record, where they follow one another in the
// order of the record that has nothing else.
namespace tavrolib {

namespace detail {

inline constexpr std::string tavroapi::TcpIpSettings::*PortTcpIpFields[] = {
    &tavroapi::TcpIpSettings::dhcpEnabled,        &tavroapi::TcpIpSettings::ipAddress,
    &tavroapi::TcpIpSettings::subnetMask,         &tavroapi::TcpIpSettings::defaultGateway,
    &tavroapi::TcpIpSettings::vlanEnabled,        &tavroapi::TcpIpSettings::vlanId,
    &tavroapi::TcpIpSettings::vlanPriority,       &tavroapi::TcpIpSettings::maxFrameSize,
    &tavroapi::TcpIpSettings::dhcpEnabledIPv6,    &tavroapi::TcpIpSettings::staticIPv6,
    &tavroapi::TcpIpSettings::staticPrefixLength, &tavroapi::TcpIpSettings::gatewayIPv6,
};
static_assert(tavroapi::iscsi_port::Dhcp + std::size(PortTcpIpFields) ==
              tavroapi::iscsi_port::GatewayIPv6 + 1);

}  // namespace detail

// The settings that a port's record tells.
inline tavroapi::TcpIpSettings TcpIpOf(const tavroapi::IscsiPortRecord& port) {
    tavroapi::TcpIpSettings settings;
    std::size_t position = tavroapi::iscsi_port::Dhcp;
    for (const auto field : detail::PortTcpIpFields) {
        settings.*field = port.texts.at(position++);
    }
    return settings;
}

// Puts the settings into a port's record.
inline void TellTcpIp(const tavroapi::TcpIpSettings& settings, tavroapi::IscsiPortRecord& port) {
    std::size_t position = tavroapi::iscsi_port::Dhcp;
    for (const auto field : detail::PortTcpIpFields) {
        port.texts.at(position++) = settings.*field;
    }
}

}  // namespace tavrolib
