#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// What makes a function an iSCSI function.
struct IscsiPart {
    std::string initiatorName;

    static constexpr auto Members() {
        return std::tuple{Member{"initiatorName", &IscsiPart::initiatorName}};
    }
};

}  // namespace tavrosim
