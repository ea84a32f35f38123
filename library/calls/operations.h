#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "library/records/record_type.h"
#include "tavroapi/operation_code.h"

namespace tavrolib {

// One operation whose records are described: its enumerator's name and what it takes and returns
// (null for nothing).
struct Operation {
    tavroapi::OperationCode code;
    std::string_view name;
    const RecordType* input;
    const RecordType* output;
};

// Every described operation.
std::span<const Operation> Operations();

// The operation of that number; null when its records are not described.
const Operation* FindOperation(std::uint32_t code);

}  // namespace tavrolib
