#pragma once

#include <string_view>

namespace tavrolinux {

// Whether this process has the right, which is one of those that failure.h names. A right that is
// not among them, or cannot be asked for, it has not.
bool HasRight(std::string_view right);

}  // namespace tavrolinux
