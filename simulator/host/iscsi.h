#pragma once

#include <tuple>

#include "simulator/host/member.h"
#include "simulator/host/tcpip.h"

namespace tavrosim {

/// What makes a function an iSCSI function.
struct IscsiPart {
    TcpIp tcpIp;

    static constexpr auto Members() {
        return std::tuple{Member{"tcpIp", &IscsiPart::tcpIp, Presence::Optional}};
    }
};

}  // namespace tavrosim
