#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "library/json/json.h"
#include "simulator/host/host.h"
#include "twin/run/program_job.h"

namespace tavrohost {

struct CaptureJob {
    LibraryChoice library{};
    bool withSecrets = false;    // keep the secrets that records carry
    bool isAnonymous = false;    // put stand-ins in the place of what identifies the host
    bool tellsProgress = false;  // on standard error
    std::optional<std::chrono::milliseconds> timeLimit{};
};

struct Capture {
    tavrosim::Host host;  // with what was captured, see IsCaptured
    // What the host has no place for though it was captured: sentences in UTF-8.
    std::vector<std::string> omissions;
};

// Captures the host that a library manages, in a child that only reads. Throws
// platform::Interrupted when a signal ended it, TroubleError or tavrolib::platform::FileError when
// the library cannot be loaded or initialized, does not come to an end, or tells too much.
Capture CaptureHost(const CaptureJob& job);

// The twin of the host that told these answers (see CaptureAnswers).
Capture CaptureFrom(const tavrolib::Json& answers);

}  // namespace tavrohost
