#pragma once

#include <string>
#include <vector>

namespace tavrohost::platform {

// The arguments of this process in UTF-8, the program's own name first. Outside Windows they are
// those of the entry function, byte for byte; on Windows they are split off the wide command line
// as the C runtime does, wildcards left alone.
std::vector<std::string> Utf8Arguments(int count, const char* const* entryValues);

}  // namespace tavrohost::platform
