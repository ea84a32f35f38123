#pragma once

#include <string>

#include "simulator/host/login.h"
#include "simulator/host/member.h"

namespace tavrosim {

// The host's iSCSI initiator, which all its iSCSI functions share.
struct Initiator {
    std::string name;
    Login login;

    static constexpr auto Members(auto visit) {
        return visit(Member{"name", &Initiator::name}, Member{"login", &Initiator::login});
    }
};

}  // namespace tavrosim
