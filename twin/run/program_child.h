#pragma once

#include <filesystem>

#include "twin/process/child.h"
#include "twin/run/program_job.h"

// The side of the child that runs the program's command line.
namespace tavrohost {

inline constexpr const char* ProgramMode = "program";

// What the child has to know of the job; its arguments travel on its command line.
tavrolib::Json DetailsOf(const ProgramJob& job);

// Where the child writes down what it watches (ReadJournal).
std::filesystem::path JournalFileIn(const std::filesystem::path& folder);

// Runs the command line of this process as the program would, watched. Returns 0 however the
// command goes.
int RunAsProgram(const ReceivedJob& job, int argc, const char* const* argv);

}  // namespace tavrohost
