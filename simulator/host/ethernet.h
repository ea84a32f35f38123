#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// What makes a function an Ethernet function.
struct EthernetPart {
    std::string interfaceName;

    static constexpr auto Members() {
        return std::tuple{Member{"interface", &EthernetPart::interfaceName}};
    }
};

}  // namespace tavrosim
