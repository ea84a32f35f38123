#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// The link status of a port that has a speed and traffic.
inline constexpr const char* LinkUp = "Up";

/// What is to be told about the port of an Ethernet function.
struct EthernetPort {
    std::string linkStatus = LinkUp;
    std::string maximumSpeed = "10 Gbps";
    std::string serialNumber;  // where empty, made from the adapter's number
    std::string partNumber = "TV-10G";
    std::string hardwareRevision = "1";
    std::string driverName = "tavronet";
    std::string driverVersion = "5.2.3.1";
    std::string firmwareVersion = "5.2.0.9";
    std::string bootCodeVersion = "5.1.4";
    std::string optionRomVersion = "5.1.0";
    std::string pciLocation;  // where empty, made from the numbers of adapter and function

    static constexpr auto Members() {
        constexpr Presence Optional = Presence::Optional;
        return std::tuple{Member{"linkStatus", &EthernetPort::linkStatus, Optional},
                          Member{"maximumSpeed", &EthernetPort::maximumSpeed, Optional},

                          Member{"serialNumber", &EthernetPort::serialNumber, Optional},
                          Member{"partNumber", &EthernetPort::partNumber, Optional},
                          Member{"hardwareRevision", &EthernetPort::hardwareRevision, Optional},
                          Member{"driverName", &EthernetPort::driverName, Optional},
                          Member{"driverVersion", &EthernetPort::driverVersion, Optional},
                          Member{"firmwareVersion", &EthernetPort::firmwareVersion, Optional},
                          Member{"bootCodeVersion", &EthernetPort::bootCodeVersion, Optional},
                          Member{"optionRomVersion", &EthernetPort::optionRomVersion, Optional},
                          Member{"pciLocation", &EthernetPort::pciLocation, Optional}};
    }
};

}  // namespace tavrosim
