#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "library/platform/environment.h"
#include "library/text/text.h"

namespace tavrolib::platform {

std::optional<std::filesystem::path> PathVariable(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') {
        return std::nullopt;
    }
    return std::filesystem::path(value);
}

bool IsSwitchedOn(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && std::string_view(value) == "1";
}

std::optional<std::filesystem::path> UserDataFolder() {
    // A relative $XDG_DATA_HOME is to be ignored by its convention.
    if (auto dataHome = PathVariable("XDG_DATA_HOME"); dataHome && dataHome->is_absolute()) {
        return dataHome;
    }
    if (const auto home = PathVariable("HOME")) {
        return *home / ".local" / "share";
    }
    const passwd* user = getpwuid(geteuid());
    if (user == nullptr || user->pw_dir == nullptr || *user->pw_dir == '\0') {
        return std::nullopt;
    }
    return std::filesystem::path(user->pw_dir) / ".local" / "share";
}

std::filesystem::path ProductFolderName() {
    return "tavro";
}

std::wstring TextOf(const std::filesystem::path& path) {
    return WideFromUtf8(path.native());
}

}  // namespace tavrolib::platform
