#pragma once

#include <stdexcept>

namespace tavrohost {

// What tavrohost tells its caller, as diff and its kind do.
enum ExitStatus : int {
    Success = 0,   // done; nothing differs, nothing was found
    Negative = 1,  // the answer is no: refused, uncertain, different, with findings
    Trouble = 2,   // tavrohost itself could not do its work
};

// Ends a command with the exit status Trouble. `what()` is UTF-8, one sentence without the
// program's name; it goes to standard error.
struct TroubleError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace tavrohost
