#include "library/platform/environment.h"

#include <windows.h>

#include <string_view>

namespace tavrolib::platform {
namespace {

std::wstring Variable(const std::wstring& name) {
    std::wstring value;
    DWORD needed = GetEnvironmentVariableW(name.c_str(), nullptr, 0);
    // The variable may grow between two calls.
    while (needed > value.size()) {
        value.resize(needed);
        needed =
            GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size()));
    }
    value.resize(needed);
    return value;
}

std::wstring Variable(const char* name) {
    const std::string_view text = name;
    return Variable(std::wstring(text.begin(), text.end()));
}

}  // namespace

std::optional<std::filesystem::path> PathVariable(const char* name) {
    std::wstring value = Variable(name);
    if (value.empty()) {
        return std::nullopt;
    }
    return std::filesystem::path(std::move(value));
}

bool IsSwitchedOn(const char* name) {
    return Variable(name) == L"1";
}

std::optional<std::filesystem::path> UserDataFolder() {
    if (const auto localData = PathVariable("LOCALAPPDATA")) {
        return localData;
    }
    if (const auto profile = PathVariable("USERPROFILE")) {
        return *profile / L"AppData" / L"Local";
    }
    return std::nullopt;
}

std::filesystem::path ProductFolderName() {
    return L"Tavro";
}

std::wstring TextOf(const std::filesystem::path& path) {
    return path.native();
}

}  // namespace tavrolib::platform
