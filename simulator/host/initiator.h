#pragma once

#include <string>
#include <tuple>

#include "simulator/host/login.h"
#include "simulator/host/member.h"

namespace tavrosim {

/// The host's iSCSI initiator, which all its iSCSI functions share.
struct Initiator {
    std::string name;
    Login login;

    static constexpr auto Members() {
        return std::tuple{Member{"name", &Initiator::name, Presence::Optional},
                          Member{"login", &Initiator::login, Presence::Optional}};
    }
};

}  // namespace tavrosim
