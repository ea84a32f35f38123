#pragma once

#include <cstdint>

#include "library/json/json.h"
#include "library/records/secrets.h"

namespace tavrolib {

// What scripts and traces do with the records of one type, without knowing the type.
struct RecordType {
    // The record as JSON (see record_json.h).
    Json (*toJson)(const void* record, Secrets secrets);
    // Fills the record; throws ShapeError. Null for a type that is only ever an input.
    void (*fill)(const Json& values, void* record, const Place& place);
    // Throws ShapeError when `fill` would. Null where `fill` is.
    void (*check)(const Json& values, const Place& place);
    // Reads and sets the completion code; null for a type that has none.
    std::int64_t (*completionCode)(const void* record);
    void (*setCompletionCode)(void* record, std::int64_t code);
};

}  // namespace tavrolib
