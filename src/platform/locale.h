// The user's locale.
#pragma once

#include <string>

namespace tavro::platform {

// Sets the process to the user's default locale and returns its name as the C library reports it,
// such as "en_US.UTF-8" or "English_United States.1252"; empty when the library knows no such
// locale (nothing is set then).
std::string UserLocaleName();

}  // namespace tavro::platform
