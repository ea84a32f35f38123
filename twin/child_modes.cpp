#include "twin/child_modes.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "twin/capture/capture_child.h"
#include "twin/exit_status.h"
#include "twin/run/program_child.h"

namespace tavrohost {
namespace {

// What a child can be.
constexpr struct {
    std::string_view name;
    int (*run)(const ReceivedJob& job, int argc, const char* const* argv);
} ChildModes[] = {
    {ProgramMode, RunAsProgram},
    {CaptureMode, RunAsCapture},
};

}  // namespace

int RunChildMode(const ReceivedJob& job, int argc, const char* const* argv) {
    const auto* const mode =
        std::ranges::find(ChildModes, job.mode, [](const auto& row) { return row.name; });
    if (mode == std::end(ChildModes)) {
        throw TroubleError("a child of an unknown mode");
    }
    return mode->run(job, argc, argv);
}

}  // namespace tavrohost
