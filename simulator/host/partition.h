#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "simulator/host/member.h"

// How adapters are divided into functions, as the host file holds it.
namespace tavrosim {

struct PartitionedFunction {
    std::string personality = "Ethernet";
    std::string lowerLimit = "0";
    std::string upperLimit = "100";

    static constexpr auto Members(auto visit) {
        return visit(Member{"personality", &PartitionedFunction::personality},
                     Member{"lowerLimit", &PartitionedFunction::lowerLimit},
                     Member{"upperLimit", &PartitionedFunction::upperLimit});
    }
};

// The partitions of an adapter. The completion code is what a change reports (tavroapi/codes.h);
// one that is refused is not taken over.
struct Partitions {
    std::int32_t completionCode = 0;
    std::string mode = "SF";
    std::array<std::string, 4> flowControl{"Auto", "Auto", "Auto", "Auto"};
    std::array<PartitionedFunction, 8> functions;

    static constexpr auto Members(auto visit) {
        return visit(Member{"completionCode", &Partitions::completionCode},
                     Member{"mode", &Partitions::mode},
                     Member{"flowControl", &Partitions::flowControl},
                     Member{"functions", &Partitions::functions});
    }
};

// What a port of an adapter that is not partitioned is used for besides Ethernet: "iSCSI" or
// "FCoE". The completion code is what a change reports.
struct Resources {
    std::int32_t completionCode = 0;
    std::string personality = "iSCSI";

    static constexpr auto Members(auto visit) {
        return visit(Member{"completionCode", &Resources::completionCode},
                     Member{"personality", &Resources::personality});
    }
};

}  // namespace tavrosim
