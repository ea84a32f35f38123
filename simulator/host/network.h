#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// An address that answers pings. Of 100 packets it loses `lossPercent`.
struct ReachableAddress {
    std::string address;
    std::uint32_t lossPercent = 0;

    static constexpr auto Members() {
        return std::tuple{
            Member{"address", &ReachableAddress::address},
            Member{"lossPercent", &ReachableAddress::lossPercent, Presence::Optional}};
    }
};

}  // namespace tavrosim
