#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/host/boot.h"
#include "simulator/host/dcb.h"
#include "simulator/host/fcoe_statistics.h"
#include "simulator/host/member.h"

namespace tavrosim {

// The driver and the hardware of an FCoE function.
struct FcoeHardware {
    std::string driver = "tavrof";
    std::string driverVersion = "5.2.3.1";
    std::string firmwareVersion = "5.2.3.0";
    std::string optionRomVersion = "5.2.1.0";
    std::string hardwareVersion = "B0";
    std::string serialNumber;
    std::string linkState = "Up";
    std::string linkSpeed = "10 Gbit/s";
    std::string deviceName;

    static constexpr auto Members(auto visit) {
        return visit(Member{"driver", &FcoeHardware::driver},
                     Member{"driverVersion", &FcoeHardware::driverVersion},
                     Member{"firmwareVersion", &FcoeHardware::firmwareVersion},
                     Member{"optionRomVersion", &FcoeHardware::optionRomVersion},
                     Member{"hardwareVersion", &FcoeHardware::hardwareVersion},
                     Member{"serialNumber", &FcoeHardware::serialNumber},
                     Member{"linkState", &FcoeHardware::linkState},
                     Member{"linkSpeed", &FcoeHardware::linkSpeed},
                     Member{"deviceName", &FcoeHardware::deviceName});
    }
};

// A target that keeps its place on the operating system's SCSI bus.
struct FcoeBinding {
    std::string targetPortWwn;
    std::uint32_t bus = 0;
    std::uint32_t target = 0;
    std::uint32_t lun = 0;
    std::string type = "Port WWN";

    static constexpr auto Members(auto visit) {
        return visit(Member{"targetPortWwn", &FcoeBinding::targetPortWwn, Presence::Required},
                     Member{"bus", &FcoeBinding::bus},
                     Member{"target", &FcoeBinding::target, Presence::Required},
                     Member{"lun", &FcoeBinding::lun}, Member{"type", &FcoeBinding::type});
    }
};

// A virtual port of a function.
struct VirtualPort {
    std::string portWwn;
    std::string nodeWwn;
    std::string fcid;

    static constexpr auto Members(auto visit) {
        return visit(Member{"portWwn", &VirtualPort::portWwn, Presence::Required},
                     Member{"nodeWwn", &VirtualPort::nodeWwn, Presence::Required},
                     Member{"fcid", &VirtualPort::fcid, Presence::Required});
    }
};

// What makes a function an FCoE function.
struct FcoePart {
    std::string portWwn;
    std::string nodeWwn;
    std::string fcid = "010000";
    std::string fipVlanId = "1002";
    FcoeHardware hardware;
    DcbSettings dcb;
    std::vector<FcoeBinding> bindings;
    std::vector<VirtualPort> virtualPorts;
    FcoeStatistics statistics;
    std::optional<FcoeBoot> boot;

    static constexpr auto Members(auto visit) {
        return visit(Member{"portWwn", &FcoePart::portWwn, Presence::Required},
                     Member{"nodeWwn", &FcoePart::nodeWwn, Presence::Required},
                     Member{"fcid", &FcoePart::fcid}, Member{"fipVlanId", &FcoePart::fipVlanId},
                     Member{"hardware", &FcoePart::hardware}, Member{"dcb", &FcoePart::dcb},
                     Member{"bindings", &FcoePart::bindings},
                     Member{"virtualPorts", &FcoePart::virtualPorts},
                     Member{"statistics", &FcoePart::statistics}, Member{"boot", &FcoePart::boot});
    }
};

}  // namespace tavrosim
