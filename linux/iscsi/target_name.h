#pragma once

#include <string>
#include <string_view>

namespace tavrolinux {

// Whether targets may be called so: 1 to 223 bytes of UTF-8 without blanks and control characters.
bool IsTargetName(std::string_view name);

// The name that a command gives, without the blanks around it. Throws IscsiFailure where targets
// may not be called so.
std::string TargetNameOf(std::string_view text);

}  // namespace tavrolinux
