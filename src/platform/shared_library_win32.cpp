#include <windows.h>

#include <array>

#include "platform/encoding.h"
#include "platform/shared_library.h"

namespace tavro::platform {
namespace {

std::wstring SystemErrorText(DWORD error) {
    std::array<wchar_t, 1024> text{};
    DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    while (length > 0 &&
           (text[length - 1] == L'\r' || text[length - 1] == L'\n' || text[length - 1] == L' ')) {
        --length;
    }
    if (length == 0) {
        return L"system error " + std::to_wstring(error);
    }
    return std::wstring(text.data(), length);
}

}  // namespace

SharedLibrary SharedLibrary::Load(const std::string& fileName) {
    SharedLibrary library;
    // A failing load is to be reported as text, not in a message box.
    const UINT formerMode = SetErrorMode(SEM_FAILCRITICALERRORS);
    const std::wstring wideName(fileName.begin(), fileName.end());
    // Without the restriction a file of that name in the current directory or in PATH would do as
    // well. It holds for this load alone: what the library loads later it finds as it always does.
    library.handle_ =
        LoadLibraryExW(wideName.c_str(), nullptr,
                       LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    const DWORD error = GetLastError();
    SetErrorMode(formerMode);
    if (library.handle_ == nullptr) {
        library.failureReason_ = wideName + L": " + SystemErrorText(error);
    }
    return library;
}

void* SharedLibrary::Resolve(const char* symbol) const {
    if (handle_ == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), symbol));
}

}  // namespace tavro::platform
