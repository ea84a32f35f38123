#pragma once

#include <optional>

#include "simulator/host/boot.h"
#include "simulator/host/hardware.h"
#include "simulator/host/iscsi_storage.h"
#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

// What makes a function an iSCSI function.
struct IscsiPart {
    TcpIp tcpIp;
    std::optional<FunctionHardware> hardware;
    IscsiStorage storage;
    std::optional<IscsiBoot> boot;

    static constexpr auto Members(auto visit) {
        return visit(Member{"tcpIp", &IscsiPart::tcpIp}, Member{"hardware", &IscsiPart::hardware},
                     Member{"storage", &IscsiPart::storage}, Member{"boot", &IscsiPart::boot});
    }
};

}  // namespace tavrosim
