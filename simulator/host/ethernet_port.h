#pragma once

#include <string>

#include "simulator/host/member.h"

namespace tavrosim {

// The link status of a port that has a speed and traffic.
inline constexpr const char* LinkUp = "Up";

// What is to be told about the port of an Ethernet function.
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

    static constexpr auto Members(auto visit) {
        return visit(Member{"linkStatus", &EthernetPort::linkStatus},
                     Member{"maximumSpeed", &EthernetPort::maximumSpeed},

                     Member{"serialNumber", &EthernetPort::serialNumber},
                     Member{"partNumber", &EthernetPort::partNumber},
                     Member{"hardwareRevision", &EthernetPort::hardwareRevision},
                     Member{"driverName", &EthernetPort::driverName},
                     Member{"driverVersion", &EthernetPort::driverVersion},
                     Member{"firmwareVersion", &EthernetPort::firmwareVersion},
                     Member{"bootCodeVersion", &EthernetPort::bootCodeVersion},
                     Member{"optionRomVersion", &EthernetPort::optionRomVersion},
                     Member{"pciLocation", &EthernetPort::pciLocation});
    }
};

}  // namespace tavrosim
