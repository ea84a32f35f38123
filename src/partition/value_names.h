#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tavroapi/partition_records.h"

// The personalities and kinds of flow control: what the library calls them, by code and by name,
// and which key of a menu chooses them.
namespace tavro {

struct FunctionPersonality {
    std::string_view menuKey;
    std::string_view code;
    std::string_view name;
    std::string_view companion;  // what a function with this personality carries besides
};

// Gives a function this personality, as code.
void GivePersonality(tavroapi::PartitionFunction& function, const FunctionPersonality& personality);

// The personality that every function has unless another one is chosen.
const FunctionPersonality& EthernetPersonality();

// The personality that a menu key chooses; null for every other text.
const FunctionPersonality* FindPersonality(std::string_view menuKey);

// The code of the flow control that a menu key chooses; nothing for every other text.
std::optional<std::string> FlowControlCode(std::string_view menuKey);

// Replaces the personality of every function by its name. A text that is no code stays as it is.
void ConvertPersonality(tavroapi::PartitionConfig& config);

// Replaces the flow control of the first `portCount` ports by its name; those beyond the record's
// four do not count. A text that is no code stays as it is.
void ConvertFlowControl(tavroapi::PartitionConfig& config, std::int32_t portCount);

}  // namespace tavro
