#pragma once

#include <optional>
#include <string>

#include "simulator/host/ethernet_settings.h"
#include "simulator/host/ethernet_statistics.h"
#include "simulator/host/hardware.h"
#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

// What makes a function an Ethernet function. What the file does not tell of its counters and
// settings is as their structs have it.
struct EthernetPart {
    std::string interfaceName;
    TcpIp tcpIp;
    std::optional<FunctionHardware> hardware;
    std::optional<EthernetStatistics> statistics;
    std::optional<EthernetSettings> settings;

    static constexpr auto Members(auto visit) {
        return visit(Member{"interface", &EthernetPart::interfaceName, Presence::Required},
                     Member{"tcpIp", &EthernetPart::tcpIp},
                     Member{"hardware", &EthernetPart::hardware},
                     Member{"statistics", &EthernetPart::statistics},
                     Member{"settings", &EthernetPart::settings},
                     Member{"port", &EthernetPart::hardware, Presence::Former});
    }
};

}  // namespace tavrosim
