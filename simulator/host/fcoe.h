#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "simulator/host/boot.h"
#include "simulator/host/dcb.h"
#include "simulator/host/fcoe_statistics.h"
#include "simulator/host/member.h"

namespace tavrosim {

/// The driver and the hardware of an FCoE function.
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

    static constexpr auto Members() {
        return std::tuple{
            Member{"driver", &FcoeHardware::driver, Presence::Optional},
            Member{"driverVersion", &FcoeHardware::driverVersion, Presence::Optional},
            Member{"firmwareVersion", &FcoeHardware::firmwareVersion, Presence::Optional},
            Member{"optionRomVersion", &FcoeHardware::optionRomVersion, Presence::Optional},
            Member{"hardwareVersion", &FcoeHardware::hardwareVersion, Presence::Optional},
            Member{"serialNumber", &FcoeHardware::serialNumber, Presence::Optional},
            Member{"linkState", &FcoeHardware::linkState, Presence::Optional},
            Member{"linkSpeed", &FcoeHardware::linkSpeed, Presence::Optional},
            Member{"deviceName", &FcoeHardware::deviceName, Presence::Optional}};
    }
};

/// A target that keeps its place on the operating system's SCSI bus.
struct FcoeBinding {
    std::string targetPortWwn;
    std::uint32_t bus = 0;
    std::uint32_t target = 0;
    std::uint32_t lun = 0;
    std::string type = "Port WWN";

    static constexpr auto Members() {
        return std::tuple{Member{"targetPortWwn", &FcoeBinding::targetPortWwn},
                          Member{"bus", &FcoeBinding::bus, Presence::Optional},
                          Member{"target", &FcoeBinding::target},
                          Member{"lun", &FcoeBinding::lun, Presence::Optional},
                          Member{"type", &FcoeBinding::type, Presence::Optional}};
    }
};

/// A virtual port of a function.
struct VirtualPort {
    std::string portWwn;
    std::string nodeWwn;
    std::string fcid;

    static constexpr auto Members() {
        return std::tuple{Member{"portWwn", &VirtualPort::portWwn},
                          Member{"nodeWwn", &VirtualPort::nodeWwn},
                          Member{"fcid", &VirtualPort::fcid}};
    }
};

/// What makes a function an FCoE function.
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

    static constexpr auto Members() {
        return std::tuple{Member{"portWwn", &FcoePart::portWwn},
                          Member{"nodeWwn", &FcoePart::nodeWwn},
                          Member{"fcid", &FcoePart::fcid, Presence::Optional},
                          Member{"fipVlanId", &FcoePart::fipVlanId, Presence::Optional},
                          Member{"hardware", &FcoePart::hardware, Presence::Optional},
                          Member{"dcb", &FcoePart::dcb, Presence::Optional},
                          Member{"bindings", &FcoePart::bindings, Presence::Optional},
                          Member{"virtualPorts", &FcoePart::virtualPorts, Presence::Optional},
                          Member{"statistics", &FcoePart::statistics, Presence::Optional},
                          Member{"boot", &FcoePart::boot, Presence::Optional}};
    }
};

}  // namespace tavrosim
