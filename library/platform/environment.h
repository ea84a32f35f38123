#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavrolib::platform {

// The environment variable as a path; nothing when it is unset or empty.
std::optional<std::filesystem::path> PathVariable(const char* name);

// Whether the environment variable is exactly "1".
bool IsSwitchedOn(const char* name);

// The folder where the platform's convention keeps the data of a user's programs; nothing when it
// cannot be told. POSIX: $XDG_DATA_HOME, else ~/.local/share; Windows: %LOCALAPPDATA%.
std::optional<std::filesystem::path> UserDataFolder();

// This product's folder name within the user's data folder, by the platform's habit.
std::filesystem::path ProductFolderName();

// The path as text for people; never fails.
std::wstring TextOf(const std::filesystem::path& path);

}  // namespace tavrolib::platform
