#pragma once

#include <span>
#include <string>

namespace tavro_fuzz {

// The names of all members of a host file.
std::span<const std::string> HostWords();

}  // namespace tavro_fuzz
