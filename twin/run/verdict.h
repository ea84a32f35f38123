#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "cli/command.h"
#include "twin/watch/journal.h"

namespace tavrohost {

// How a command went, by the calls that it made.
struct Verdict {
    // Every call that decides was made and returned 0, with a completion code of 0 or 201 where
    // there is one, and no records of it tell that not all was done.
    bool isDone = false;
    // What was done takes effect at the restart of the host: one of them had the completion code
    // 201.
    bool restartRequired = false;
    // The place of the last call that keeps the command from being done: one that decides, or the
    // initialization of the library.
    std::optional<std::size_t> lastFailure{};
};

// Whether a call that came back did all that was asked: it returned 0, with a completion code of 0
// or 201 where there is one, and no records tell otherwise.
bool Succeeded(std::uint32_t status, std::optional<std::int64_t> completionCode, bool isIncomplete);

// Judges by the row of the command. A library that could not be initialized has done nothing.
Verdict Judge(const tavro::Decision& decision, std::span<const WatchedCall> calls);

}  // namespace tavrohost
