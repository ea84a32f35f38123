#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/host/boot.h"
#include "simulator/host/dcb.h"
#include "simulator/host/fcoe_statistics.h"
#include "simulator/host/hardware.h"
#include "simulator/host/member.h"

namespace tavrosim {

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
    std::optional<FunctionHardware> hardware;
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
