#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "simulator/host/member.h"

// How adapters are divided into functions, as the host file holds it.
namespace tavrosim {

// Personalities of functions and ports, and the modes of adapters.
inline constexpr const char* EthernetPersonality = "Ethernet";
inline constexpr const char* IscsiPersonality = "iSCSI";
inline constexpr const char* FcoePersonality = "FCoE";
inline constexpr const char* SingleFunctionMode = "SF";
inline constexpr const char* PartitionedMode = "MF";

struct PartitionedFunction {
    std::string personality = EthernetPersonality;
    std::string lowerLimit = "0";
    std::string upperLimit = "100";

    static constexpr auto Members(auto visit) {
        return visit(Member{"personality", &PartitionedFunction::personality},
                     Member{"lowerLimit", &PartitionedFunction::lowerLimit},
                     Member{"upperLimit", &PartitionedFunction::upperLimit});
    }

    bool operator==(const PartitionedFunction&) const = default;
};

// The partitions of an adapter. The completion code is what a change reports (tavroapi/codes.h):
// one that is refused is not taken over, one that is applied at the restart is pending until then.
struct Partitions {
    std::int32_t completionCode = 0;
    std::string mode = SingleFunctionMode;
    std::array<std::string, 4> flowControl{"Auto", "Auto", "Auto", "Auto"};
    std::array<PartitionedFunction, 8> functions;

    static constexpr auto Members(auto visit) {
        return visit(Member{"completionCode", &Partitions::completionCode},
                     Member{"mode", &Partitions::mode},
                     Member{"flowControl", &Partitions::flowControl},
                     Member{"functions", &Partitions::functions});
    }
};

// What a port of an adapter that is not partitioned is used for besides Ethernet: iSCSI or FCoE.
// The completion code is what a change reports; a personality that is applied at the restart is
// pending until then.
struct Resources {
    std::int32_t completionCode = 0;
    std::string personality = IscsiPersonality;
    std::optional<std::string> pendingPersonality;

    static constexpr auto Members(auto visit) {
        return visit(Member{"completionCode", &Resources::completionCode},
                     Member{"personality", &Resources::personality},
                     Member{"pendingPersonality", &Resources::pendingPersonality});
    }
};

}  // namespace tavrosim
