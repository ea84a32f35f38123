#pragma once

#include <optional>
#include <string>

#include "simulator/host/ethernet_port.h"
#include "simulator/host/ethernet_settings.h"
#include "simulator/host/ethernet_statistics.h"
#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

// What makes a function an Ethernet function. What the file does not tell of its port, counters
// and settings is as their structs have it.
struct EthernetPart {
    std::string interfaceName;
    TcpIp tcpIp;
    std::optional<EthernetPort> port;
    std::optional<EthernetStatistics> statistics;
    std::optional<EthernetSettings> settings;

    static constexpr auto Members(auto visit) {
        return visit(Member{"interface", &EthernetPart::interfaceName, Presence::Required},
                     Member{"tcpIp", &EthernetPart::tcpIp}, Member{"port", &EthernetPart::port},
                     Member{"statistics", &EthernetPart::statistics},
                     Member{"settings", &EthernetPart::settings});
    }
};

}  // namespace tavrosim
