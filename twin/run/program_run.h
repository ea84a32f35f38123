#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "library/json/json.h"
#include "twin/exit_status.h"
#include "twin/run/program_job.h"
#include "twin/watch/journal.h"

// Runs a command line of the program in a child and tells how it went.
namespace tavrohost {

enum class RunOutcome {
    Done,     // the library did what was asked for
    Refused,  // it refused, or was not asked: a bad operand, a declined question, an unknown
              // command
    Failed,   // the run did not come to its end, or there is no library
};

struct RunReport {
    RunOutcome outcome = RunOutcome::Failed;
    // Why a run has failed, one sentence in UTF-8.
    std::string failure;
    // What was done takes effect at the restart of the host.
    bool restartRequired = false;
    // What the command printed, in UTF-8, where it was kept.
    std::string output;
    std::vector<WatchedCall> calls{};
    // What the library says of the last call that keeps the command from being done, where it was
    // asked: an object with the members of ErrorRecord.
    std::optional<tavrolib::Json> error{};
};

// Runs the job. Throws platform::Interrupted when a signal ended it, TroubleError or
// tavrolib::platform::FileError when it could not be started or its results not be read.
RunReport RunProgram(const ProgramJob& job);

// The row of the command table that the arguments (without the program's name) name.
const tavro::Command& CommandOf(const std::vector<std::string>& arguments);

// The exit status that tells of an outcome.
ExitStatus StatusOf(RunOutcome outcome);

// The arguments for a report, in UTF-8: words among the login options that are none, which may be
// secrets in a place where they do not belong, are "***".
std::vector<std::string> ShownArguments(const std::vector<std::string>& arguments);

// The report as the document that docs/run.schema.json describes.
tavrolib::Json ReportJson(const ProgramJob& job, const RunReport& report);

}  // namespace tavrohost
