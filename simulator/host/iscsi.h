#pragma once

#include <optional>
#include <tuple>

#include "simulator/host/boot.h"
#include "simulator/host/iscsi_storage.h"
#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

/// What makes a function an iSCSI function.
struct IscsiPart {
    TcpIp tcpIp;
    IscsiHardware hardware;
    IscsiStorage storage;
    std::optional<IscsiBoot> boot;

    static constexpr auto Members() {
        return std::tuple{Member{"tcpIp", &IscsiPart::tcpIp, Presence::Optional},
                          Member{"hardware", &IscsiPart::hardware, Presence::Optional},
                          Member{"storage", &IscsiPart::storage, Presence::Optional},
                          Member{"boot", &IscsiPart::boot, Presence::Optional}};
    }
};

}  // namespace tavrosim
