#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tavroapi/partition_records.h"

namespace tavro {

// The modes that are sent to the library.
inline constexpr std::string_view SingleFunctionMode = "0";
inline constexpr std::string_view PartitionedMode = "2";

// Asks for a whole configuration of an adapter of this type with this many ports: the mode and
// then, port by port, flow control and, where the adapter is to be partitioned, its functions.
// `config`, empty at first, is complete afterwards, in codes. Wrong answers are asked again without
// limit.
void AskPartitions(std::string_view adapterType, std::int32_t portCount,
                   tavroapi::PartitionConfig& config);

}  // namespace tavro
