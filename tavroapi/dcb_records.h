#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// How a port's data center bridging is configured.
struct DcbConfig {
    std::string state;  // "Enable" or "Disable" where the program sets it
    std::string willing;
    std::string priorities;  // numbers separated by blanks where the program sets them
    std::string fcoePriority;
    std::string priorityMap;       // items separated by commas
    std::string priorityGroupMap;  // items "group:priorities" separated by commas
    std::string bandwidth;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"state", &DcbConfig::state}, Field{"text2", &DcbConfig::willing},
                     Field{"priorities", &DcbConfig::priorities},
                     Field{"text4", &DcbConfig::fcoePriority},
                     Field{"priorityMap", &DcbConfig::priorityMap},
                     Field{"priorityGroupMap", &DcbConfig::priorityGroupMap},
                     Field{"bandwidth", &DcbConfig::bandwidth});
    }
};

// One priority, and what is set for it.
using DcbPriority = TextRecord<2>;

// The positions in `DcbPriority`.
namespace dcb_priority {
enum Position : std::size_t { Number, FlowControl };
}  // namespace dcb_priority

// What a port and its peer agreed on in data center bridging: a summary, the port's side and the
// peer's side. The maps are items "group:priorities", the bandwidths items "group:bandwidth", both
// separated by commas.
struct DcbInfo {
    std::array<std::string, 4> summary;
    std::array<std::string, 6> local;
    std::string localGroupMap;
    std::string localBandwidths;
    std::list<DcbPriority> localPriorities;
    std::array<std::string, 6> peer;
    std::string peerGroupMap;
    std::string peerBandwidths;
    std::list<DcbPriority> peerPriorities;

    static constexpr auto Fields(auto visit) {
        return visit(
            SpreadField{"summary", &DcbInfo::summary}, SpreadField{"local", &DcbInfo::local},
            Field{"localGroupMap", &DcbInfo::localGroupMap},
            Field{"localBandwidths", &DcbInfo::localBandwidths},
            Field{"localPriorities", &DcbInfo::localPriorities},
            SpreadField{"peer", &DcbInfo::peer}, Field{"peerGroupMap", &DcbInfo::peerGroupMap},
            Field{"peerBandwidths", &DcbInfo::peerBandwidths},
            Field{"peerPriorities", &DcbInfo::peerPriorities});
    }
};

template <>
struct OperationRecords<OperationCode::ReadDcbInfo> : Exchanges<NoRecord, DcbInfo> {};
template <>
struct OperationRecords<OperationCode::WriteDcbConfig> : Exchanges<DcbConfig, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ReadDcbConfig> : Exchanges<NoRecord, DcbConfig> {};

using DcbOperations = OperationList<OperationCode::ReadDcbInfo, OperationCode::WriteDcbConfig,
                                    OperationCode::ReadDcbConfig>;

}  // namespace tavroapi
