#pragma once

#include <cstdint>

#include "linux/system/roots.h"

namespace tavrolinux {

// The kernel's number of the network (namespace) that this process works in; 0 where it cannot be
// told.
std::uint32_t NetworkOfThisProcess(const Roots& roots);

}  // namespace tavrolinux
