#pragma once

#include <memory>

#include "library/calls/call.h"

namespace tavrosim {

// What playing captured answers does with the result records of one call, without knowing their
// type.
struct ResultRecords {
    std::shared_ptr<void> (*copy)(const void* record);
    bool (*isSame)(const void* one, const void* other);
    // Merges (see merge.h) into `merged`, which is none of the other three.
    void (*merge)(const void* captured, const void* before, const void* now, void* merged);
};

// How to treat what the call fills in; null for a call that fills in nothing known.
const ResultRecords* ResultRecordsOf(const tavrolib::Call& call);

}  // namespace tavrosim
