#include "twin/platform/environment.h"

#include <windows.h>

#include "library/text/text.h"
#include "platform/wipe.h"

namespace tavrohost::platform {

bool ReadVariable(const std::string& name, std::string& value) {
    const std::wstring wideName = tavrolib::WideFromUtf8(name);
    // With the zero at the end, so that an empty value has a length, too.
    const DWORD room = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
    std::wstring wide(room, L'\0');
    const tavro::platform::WipeAtEnd wideGuard(wide);
    const DWORD length = GetEnvironmentVariableW(wideName.c_str(), wide.data(), room);
    if (length >= room) {  // none, or another one than a moment ago
        return false;
    }
    constexpr std::size_t MostBytesOfAUnit = 3;
    value.resize(MostBytesOfAUnit * length);
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(length), value.data(),
                            static_cast<int>(value.size()), nullptr, nullptr);
    value.resize(static_cast<std::size_t>(size));
    return true;
}

// Both kinds of libraries see it: those that ask the system and those that ask the C runtime.
void SetVariable(const std::string& name, const std::filesystem::path& value) {
    _wputenv_s(tavrolib::WideFromUtf8(name).c_str(), value.c_str());
}

void UnsetVariable(const std::string& name) {
    _wputenv_s(tavrolib::WideFromUtf8(name).c_str(), L"");
}

}  // namespace tavrohost::platform
