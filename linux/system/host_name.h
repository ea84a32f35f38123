#pragma once

#include <string>

namespace tavrolinux {

// The name of this host. Throws SystemFailure.
std::string ReadHostName();

}  // namespace tavrolinux
