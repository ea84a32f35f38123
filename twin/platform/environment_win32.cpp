#include "twin/platform/environment.h"

#include <windows.h>

#include "library/text/text.h"

namespace tavrohost::platform {

std::optional<std::string> TextVariable(const std::string& name) {
    const std::wstring wideName = tavrolib::WideFromUtf8(name);
    std::wstring value(1, L'\0');
    while (true) {
        SetLastError(ERROR_SUCCESS);
        const DWORD needed = GetEnvironmentVariableW(wideName.c_str(), value.data(),
                                                     static_cast<DWORD>(value.size()));
        if (needed == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
            return std::nullopt;
        }
        const bool fits = needed < value.size();
        value.resize(needed);
        if (fits) {
            return tavrolib::Utf8FromWide(value);
        }
    }
}

// Both kinds of libraries see it: those that ask the system and those that ask the C runtime.
void SetVariable(const std::string& name, const std::filesystem::path& value) {
    _wputenv_s(tavrolib::WideFromUtf8(name).c_str(), value.c_str());
}

void UnsetVariable(const std::string& name) {
    _wputenv_s(tavrolib::WideFromUtf8(name).c_str(), L"");
}

}  // namespace tavrohost::platform
