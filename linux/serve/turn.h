#pragma once

#include <memory>

#include "library/platform/file.h"
#include "linux/system/roots.h"

namespace tavrolinux {

// Waits until no other process changes interfaces by this library, and keeps the others waiting as
// long as what is returned lives. The lock lies under /run, for root alone; a process that may not
// write there goes without one and gets null. Throws tavrolib::platform::FileError where the lock
// cannot be had in time.
std::unique_ptr<tavrolib::platform::FileLock> TakeTurn(const Roots& roots);

}  // namespace tavrolinux
