#pragma once

#include <cstdint>
#include <optional>

#include "library/calls/call.h"
#include "tavroapi/inventory_records.h"

namespace tavrohost {

// A management library, however it is reached. It must have been initialized.
class LibraryCaller {
  public:
    LibraryCaller() = default;
    virtual ~LibraryCaller() = default;
    LibraryCaller(const LibraryCaller&) = delete;
    LibraryCaller& operator=(const LibraryCaller&) = delete;

    // Calls the entry point with the call's texts and records, which must be there, and returns its
    // status. Nothing when the library has no such entry point, or lets an exception out of it.
    virtual std::optional<std::uint32_t> Perform(const tavrolib::Call& call) = 0;

    // What the library tells of its most recent failure; nothing when it tells nothing.
    virtual std::optional<tavroapi::ErrorRecord> LastError() = 0;
};

}  // namespace tavrohost
