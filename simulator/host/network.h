#pragma once

#include <cstdint>
#include <string>

#include "simulator/host/member.h"

namespace tavrosim {

// An address that answers pings. Of 100 packets it loses `lossPercent`.
struct ReachableAddress {
    std::string address;
    std::uint32_t lossPercent = 0;

    static constexpr auto Members(auto visit) {
        return visit(Member{"address", &ReachableAddress::address, Presence::Required},
                     Member{"lossPercent", &ReachableAddress::lossPercent});
    }
};

}  // namespace tavrosim
