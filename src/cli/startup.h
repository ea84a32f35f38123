#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cli/arguments.h"

namespace tavro {

// What makes the library log its calls, as the last argument.
inline constexpr std::string_view DebugSwitch = "-debug";

// Whether the last argument is exactly the debug switch. The argument stays where it is.
bool EndsWithDebugSwitch(Arguments arguments);

// At most 30 characters of a locale's name, each byte widened. Only this many fit the library's
// buffer.
std::wstring LocaleText(const std::string& localeName);

// Sets the process to the user's default locale and returns its name for the library, at most 30
// characters; empty when the system knows neither that locale nor the one of its messages.
std::wstring GetLanguage();

// Opens "tavrocli.log" in the current directory for append, unless it is open already. The program
// writes nothing into it: the file is there so that the library, told by the debug flag, has a
// place to log. Without it start-up goes on: when it cannot be opened, is no regular file, or is a
// link that somebody else laid (on Windows, any link).
void OpenDebugLog();

// Opens the debug log and initializes the management library with the debug flag (0 or 1) and the
// user's locale. False, after the library's error details, when the library refuses; false without
// output when it has no such entry point.
bool Initialize(std::uint8_t debugFlag);

// Uninitializes the library and stores its status. Nothing happens when it has no such entry point.
void Uninitialize();

}  // namespace tavro
