#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "tavroapi/inventory_records.h"

namespace tavrosim {

/// The statuses that the library itself gives; 0 is success. The error record of a failure has the
/// same code.
enum class Status : std::uint32_t {
    Done = 0,
    NotInitialized = 36865,
    ScriptUnusable = 36866,
    TraceUnusable = 36867,
    HostUnusable = 36868,
    HostNotWritten = 36869,
    UnknownOperation = 36870,
    UnknownIdentifier = 36871,
    MissingArgument = 36872,
    UnknownMessage = 36873,
    Internal = 36874,
};

/// How a call ended: done, or refused with a status and what the user is told about it.
struct Outcome {
    std::uint32_t status = 0;
    std::optional<tavroapi::ErrorRecord> error;

    bool IsDone() const { return status == 0; }
};

inline Outcome Done() {
    return {};
}

/// A refusal: what happened, what the user can do, and the details. Statuses of one operation's own
/// are given as numbers.
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

}  // namespace tavrosim
