#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// What makes a function an FCoE function.
struct FcoePart {
    std::string portWwn;
    std::string nodeWwn;

    static constexpr auto Members() {
        return std::tuple{Member{"portWwn", &FcoePart::portWwn},
                          Member{"nodeWwn", &FcoePart::nodeWwn}};
    }
};

}  // namespace tavrosim
