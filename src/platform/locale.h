// The user's locale.
#pragma once

#include <string>

namespace tavro::platform {

// Sets the process to the user's default locale and returns its name as the C library reports it,
// such as "en_US.UTF-8" or "English_United States.1252". When the library knows no such locale the
// name is empty and nothing is set; outside Windows, where each category has a locale of its own,
// those that the library knows are set even then, the others from LANG, and the name is that of the
// messages.
std::string UserLocaleName();

}  // namespace tavro::platform
