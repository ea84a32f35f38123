#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// The TCP/IP settings of an Ethernet or iSCSI function: the texts of the contract's record.
struct TcpIp {
    std::string dhcp = "No";
    std::string address = "0.0.0.0";
    std::string subnetMask = "0.0.0.0";
    std::string gateway = "0.0.0.0";
    std::string vlanId = "0";
    std::string vlanPriority = "0";
    std::string maxFrameSize = "1500";
    std::string dhcpIPv6 = "No";
    std::string addressIPv6 = "::";
    std::string prefixLengthIPv6 = "64";
    std::string gatewayIPv6 = "::";

    static constexpr auto Members() {
        return std::tuple{Member{"dhcp", &TcpIp::dhcp, Presence::Optional},
                          Member{"address", &TcpIp::address, Presence::Optional},
                          Member{"subnetMask", &TcpIp::subnetMask, Presence::Optional},
                          Member{"gateway", &TcpIp::gateway, Presence::Optional},
                          Member{"vlanId", &TcpIp::vlanId, Presence::Optional},
                          Member{"vlanPriority", &TcpIp::vlanPriority, Presence::Optional},
                          Member{"maxFrameSize", &TcpIp::maxFrameSize, Presence::Optional},
                          Member{"dhcpIPv6", &TcpIp::dhcpIPv6, Presence::Optional},
                          Member{"addressIPv6", &TcpIp::addressIPv6, Presence::Optional},
                          Member{"prefixLengthIPv6", &TcpIp::prefixLengthIPv6, Presence::Optional},
                          Member{"gatewayIPv6", &TcpIp::gatewayIPv6, Presence::Optional}};
    }

    bool operator==(const TcpIp&) const = default;
};

}  // namespace tavrosim
