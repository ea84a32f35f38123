#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

/// What makes a function an Ethernet function.
struct EthernetPart {
    std::string interfaceName;
    TcpIp tcpIp;

    static constexpr auto Members() {
        return std::tuple{Member{"interface", &EthernetPart::interfaceName},
                          Member{"tcpIp", &EthernetPart::tcpIp, Presence::Optional}};
    }
};

}  // namespace tavrosim
