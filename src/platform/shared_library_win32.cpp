#include <windows.h>

#include <array>
#include <system_error>
#include <utility>

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

// The handle, or null and the reason.
struct LoadResult {
    HMODULE handle;
    std::wstring failureReason;
};

// `searched` are the folders, as LoadLibraryExW takes them.
LoadResult LoadSearching(const std::wstring& name, DWORD searched) {
    // A failing load is to be reported as text, not in a message box.
    const UINT formerMode = SetErrorMode(SEM_FAILCRITICALERRORS);
    const HMODULE handle = LoadLibraryExW(name.c_str(), nullptr, searched);
    const DWORD error = GetLastError();
    SetErrorMode(formerMode);
    return {handle, handle == nullptr ? name + L": " + SystemErrorText(error) : std::wstring()};
}

}  // namespace

SharedLibrary SharedLibrary::Load(const std::string& fileName) {
    // Without the restriction a file of that name in the current directory or in PATH would do as
    // well. It holds for this load alone: what the library loads later it finds as it always does.
    LoadResult result =
        LoadSearching({fileName.begin(), fileName.end()},
                      LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    return {result.handle, std::move(result.failureReason)};
}

SharedLibrary SharedLibrary::LoadFrom(const std::filesystem::path& file) {
    std::error_code ignored;
    std::filesystem::path whole = std::filesystem::absolute(file, ignored);
    // Slashes would be taken for a part of the name.
    whole.make_preferred();
    LoadResult result = LoadSearching(
        whole.native(), LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    return {result.handle, std::move(result.failureReason)};
}

void* SharedLibrary::Resolve(const char* symbol) const {
    if (handle_ == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), symbol));
}

}  // namespace tavro::platform
