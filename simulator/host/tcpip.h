#pragma once

#include <optional>
#include <string>

#include "simulator/host/member.h"

namespace tavrosim {

// The TCP/IP settings of an Ethernet or iSCSI function: the texts of the contract's record.
struct TcpIp {
    std::string dhcp = "No";
    std::string address = "0.0.0.0";
    std::string subnetMask = "0.0.0.0";
    std::string gateway = "0.0.0.0";
    std::string vlanId = "0";
    std::optional<std::string> pendingVlanId;  // applied at the restart; Ethernet only
    std::string vlanPriority = "0";
    std::string maxFrameSize = "1500";
    std::string dhcpIPv6 = "No";
    std::string addressIPv6 = "::";
    std::string prefixLengthIPv6 = "64";
    std::string gatewayIPv6 = "::";

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"dhcp", &TcpIp::dhcp}, Member{"address", &TcpIp::address},
            Member{"subnetMask", &TcpIp::subnetMask}, Member{"gateway", &TcpIp::gateway},
            Member{"vlanId", &TcpIp::vlanId}, Member{"pendingVlanId", &TcpIp::pendingVlanId},
            Member{"vlanPriority", &TcpIp::vlanPriority},
            Member{"maxFrameSize", &TcpIp::maxFrameSize}, Member{"dhcpIPv6", &TcpIp::dhcpIPv6},
            Member{"addressIPv6", &TcpIp::addressIPv6},
            Member{"prefixLengthIPv6", &TcpIp::prefixLengthIPv6},
            Member{"gatewayIPv6", &TcpIp::gatewayIPv6});
    }

    bool operator==(const TcpIp&) const = default;
};

}  // namespace tavrosim
