#pragma once

#include <string>

namespace tavro {

// Runs the command line of this process; the parameters are those of its entry function. Everything
// but standard error is written on the way. Returns the line for standard error that tells of the
// exception that ended the run, or of an argument that is not to be acted on; empty when there is
// none.
std::wstring RunCommandLine(int count, const char* const* values);

}  // namespace tavro
