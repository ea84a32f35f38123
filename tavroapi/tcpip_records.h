#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// The TCP/IP settings of one iSCSI or Ethernet function. Switches are "Yes" or "No", numbers are
// decimal texts, addresses are written as usual. `result` is the library's completion code after
// the Ethernet settings were written (see codes.h). `libraryText13` is the library's own; ours
// names in it who else owns the settings of a real host's interface, and then does not change them.
struct TcpIpSettings {
    std::string dhcpEnabled;
    std::string ipAddress;
    std::string subnetMask;
    std::string defaultGateway;
    std::string vlanEnabled;
    std::string vlanId;
    std::string vlanPriority;
    std::string maxFrameSize;
    std::string dhcpEnabledIPv6;
    std::string staticIPv6;
    std::string staticPrefixLength;
    std::string gatewayIPv6;
    std::string libraryText13;
    std::string ipVersion;  // "1" addresses IPv4, "0" IPv6; the Ethernet commands set it
    std::string linkLocalIPv6;
    std::array<std::string, 2> libraryTexts16To17;
    std::uint32_t result = 0;

    static constexpr auto CompletionCode() { return &TcpIpSettings::result; }
    static constexpr auto Fields(auto visit) {
        return visit(Field{"Dhcp_Enabled", &TcpIpSettings::dhcpEnabled},
                     Field{"IP_Address", &TcpIpSettings::ipAddress},
                     Field{"Subnet_Mask", &TcpIpSettings::subnetMask},
                     Field{"Default_Gateway", &TcpIpSettings::defaultGateway},
                     Field{"Vlan_Enabled", &TcpIpSettings::vlanEnabled},
                     Field{"Vlan_Id", &TcpIpSettings::vlanId},
                     Field{"Vlan_Priority", &TcpIpSettings::vlanPriority},
                     Field{"Max_Frame_Size", &TcpIpSettings::maxFrameSize},
                     Field{"Dhcp_Enabled_IPv6", &TcpIpSettings::dhcpEnabledIPv6},
                     Field{"Static_IPv6", &TcpIpSettings::staticIPv6},
                     Field{"Static_Prefixlen", &TcpIpSettings::staticPrefixLength},
                     Field{"Gateway_IPv6", &TcpIpSettings::gatewayIPv6},
                     Field{"text13", &TcpIpSettings::libraryText13},
                     Field{"IpVersion", &TcpIpSettings::ipVersion},
                     Field{"text15", &TcpIpSettings::linkLocalIPv6},
                     SpreadField{"text16to17", &TcpIpSettings::libraryTexts16To17},
                     Field{"Result", &TcpIpSettings::result});
    }
};

template <>
struct OperationRecords<OperationCode::SetIscsiTcpIp> : Exchanges<TcpIpSettings, NoRecord> {};
template <>
struct OperationRecords<OperationCode::SetEthernetTcpIp> : Exchanges<TcpIpSettings, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ReadEthernetTcpIp> : Exchanges<NoRecord, TcpIpSettings> {};

using TcpIpOperations = OperationList<OperationCode::SetIscsiTcpIp, OperationCode::SetEthernetTcpIp,
                                      OperationCode::ReadEthernetTcpIp>;

}  // namespace tavroapi
