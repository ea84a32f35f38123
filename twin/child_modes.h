#pragma once

#include "twin/process/child.h"

namespace tavrohost {

// Does what this process was started for as a child; the parameters behind the job are those of the
// entry function. Returns the exit status.
int RunChildMode(const ReceivedJob& job, int argc, const char* const* argv);

}  // namespace tavrohost
