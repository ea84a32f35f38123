#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "library/calls/status.h"
#include "tavroapi/inventory_records.h"

namespace tavrolib {

// How a call ended: done, or refused with a status and what the user is told about it.
struct Outcome {
    std::uint32_t status = 0;
    std::optional<tavroapi::ErrorRecord> error;

    bool IsDone() const { return status == 0; }
};

inline Outcome Done() {
    return {};
}

// A refusal: what happened, what the user can do, and the details. A status of the contract's own
// is given as its number.
inline Outcome Refused(std::uint32_t status, std::wstring message, std::wstring action,
                       std::wstring details = {}) {
    tavroapi::ErrorRecord error;
    error.code = status;
    error.message = std::move(message);
    error.action = std::move(action);
    error.details = std::move(details);
    return {status, std::move(error)};
}

inline Outcome Refused(Status status, std::wstring message, std::wstring action,
                       std::wstring details = {}) {
    return Refused(static_cast<std::uint32_t>(status), std::move(message), std::move(action),
                   std::move(details));
}

}  // namespace tavrolib
