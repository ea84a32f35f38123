#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "simulator/host/ethernet_port.h"
#include "simulator/host/ethernet_settings.h"
#include "simulator/host/ethernet_statistics.h"
#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

/// What makes a function an Ethernet function. What the file does not tell of its port, counters
/// and settings is as their structs have it.
struct EthernetPart {
    std::string interfaceName;
    TcpIp tcpIp;
    std::optional<EthernetPort> port;
    std::optional<EthernetStatistics> statistics;
    std::optional<EthernetSettings> settings;

    static constexpr auto Members() {
        return std::tuple{Member{"interface", &EthernetPart::interfaceName},
                          Member{"tcpIp", &EthernetPart::tcpIp, Presence::Optional},
                          Member{"port", &EthernetPart::port, Presence::Optional},
                          Member{"statistics", &EthernetPart::statistics, Presence::Optional},
                          Member{"settings", &EthernetPart::settings, Presence::Optional}};
    }
};

}  // namespace tavrosim
