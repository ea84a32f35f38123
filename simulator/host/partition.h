#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <tuple>

#include "simulator/host/member.h"

/// How adapters are divided into functions, as the host file holds it.
namespace tavrosim {

/// The partition states of an adapter.
inline constexpr std::uint32_t NotPartitioned = 1;
inline constexpr std::uint32_t PartitionedForGood = 2;
inline constexpr std::uint32_t Partitioned = 3;

struct PartitionedFunction {
    std::string personality = "Ethernet";
    std::string lowerLimit = "0";
    std::string upperLimit = "100";

    static constexpr auto Members() {
        return std::tuple{
            Member{"personality", &PartitionedFunction::personality, Presence::Optional},
            Member{"lowerLimit", &PartitionedFunction::lowerLimit, Presence::Optional},
            Member{"upperLimit", &PartitionedFunction::upperLimit, Presence::Optional}};
    }
};

/// The partitions of an adapter. The completion code is what a change reports: 0, 201 when it waits
/// for a restart, 5 when it is not taken over.
struct Partitions {
    std::int32_t completionCode = 0;
    std::string mode = "SF";
    std::array<std::string, 4> flowControl{"Auto", "Auto", "Auto", "Auto"};
    std::array<PartitionedFunction, 8> functions;

    static constexpr auto Members() {
        return std::tuple{Member{"completionCode", &Partitions::completionCode, Presence::Optional},
                          Member{"mode", &Partitions::mode, Presence::Optional},
                          Member{"flowControl", &Partitions::flowControl, Presence::Optional},
                          Member{"functions", &Partitions::functions, Presence::Optional}};
    }
};

/// What a port of an adapter that is not partitioned is used for besides Ethernet: "iSCSI" or
/// "FCoE". The completion code is what a change reports.
struct Resources {
    std::int32_t completionCode = 0;
    std::string personality = "iSCSI";

    static constexpr auto Members() {
        return std::tuple{Member{"completionCode", &Resources::completionCode, Presence::Optional},
                          Member{"personality", &Resources::personality, Presence::Optional}};
    }
};

}  // namespace tavrosim
