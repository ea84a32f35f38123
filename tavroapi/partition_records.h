#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// One function of a partitioned adapter. The personality is "3" (Ethernet), "5" (iSCSI) or "9"
// (FCoE), or its name; the limits are whole numbers from 0 to 100 in decimal; the companion of the
// personality is "16" with Ethernet and "0" with the others.
struct PartitionFunction {
    std::string libraryText0;
    std::string personality;
    std::string lowerLimit;
    std::string upperLimit;
    std::array<std::string, 5> libraryTexts4To8;
    std::string companion;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"text0", &PartitionFunction::libraryText0},
                     Field{"personality", &PartitionFunction::personality},
                     Field{"lowerLimit", &PartitionFunction::lowerLimit},
                     Field{"upperLimit", &PartitionFunction::upperLimit},
                     SpreadField{"text4to8", &PartitionFunction::libraryTexts4To8},
                     Field{"companion", &PartitionFunction::companion});
    }
};

// How an adapter is divided into functions. The mode is sent as "0" (single function) or "2"
// (partitioned) and may be read as a name, "SF" for single function; flow control, by port, is "0"
// to "4" or its name. `result` is the library's completion code after the record was written (see
// codes.h).
struct PartitionConfig {
    std::string tag;
    std::string mode;
    std::array<std::string, 4> libraryTexts3To6;
    std::array<std::string, 4> flowControl;
    std::array<std::string, 4> libraryTexts11To14;
    std::array<PartitionFunction, 8> functions;
    std::int32_t result = 0;
    std::int32_t portCount = 0;

    static constexpr auto CompletionCode() { return &PartitionConfig::result; }
    static constexpr auto Fields(auto visit) {
        return visit(Field{"tag", &PartitionConfig::tag}, Field{"mode", &PartitionConfig::mode},
                     SpreadField{"text3to6", &PartitionConfig::libraryTexts3To6},
                     SpreadField{"flowControl", &PartitionConfig::flowControl},
                     SpreadField{"text11to14", &PartitionConfig::libraryTexts11To14},
                     SpreadField{"functions", &PartitionConfig::functions},
                     Field{"result", &PartitionConfig::result},
                     Field{"portCount", &PartitionConfig::portCount});
    }
};

// The personality of a port that is not partitioned: read as a text, written as "1" or "2".
// `result` is the library's completion code after the record was written (see codes.h).
struct PersonalitySetting {
    std::string value;
    std::int32_t result = 0;

    static constexpr auto CompletionCode() { return &PersonalitySetting::result; }
    static constexpr auto Fields(auto visit) {
        return visit(Field{"value", &PersonalitySetting::value},
                     Field{"result", &PersonalitySetting::result});
    }
};

template <>
struct OperationRecords<OperationCode::ReadPartitions> : Exchanges<NoRecord, PartitionConfig> {};
template <>
struct OperationRecords<OperationCode::WritePartitions> : Exchanges<PartitionConfig, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ReadPersonality> : Exchanges<NoRecord, PersonalitySetting> {
};
template <>
struct OperationRecords<OperationCode::WritePersonality> : Exchanges<PersonalitySetting, NoRecord> {
};

using PartitionOperations =
    OperationList<OperationCode::ReadPartitions, OperationCode::WritePartitions,
                  OperationCode::ReadPersonality, OperationCode::WritePersonality>;

}  // namespace tavroapi
