#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/encoding.h"
#include "platform/shared_library.h"

namespace tavro::platform {
namespace {

// The folder of the running program with a slash at its end, links resolved; empty when the system
// does not tell.
std::string ProgramFolder() {
    std::string path(256, '\0');
    while (true) {
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length <= 0 || path.front() != '/') {
            return {};
        }
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            return path.substr(0, path.rfind('/') + 1);
        }
        path.resize(2 * path.size());
    }
}

// The folder as the dynamic loader is to be given it; empty when it cannot be. The loader replaces
// words like "$ORIGIN" in a path, so a folder with such a name goes by a descriptor, which stays
// open like the library.
std::string LoaderFolder(const std::string& folder) {
    if (folder.find('$') == std::string::npos) {
        return folder;
    }
    const int descriptor = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return descriptor < 0 ? std::string() : "/proc/self/fd/" + std::to_string(descriptor) + "/";
}

// One line whatever a folder is called.
std::wstring OneLine(std::string_view bytes) {
    std::wstring text = DecodeText(bytes, Utf8CodePage).value();
    for (wchar_t& character : text) {
        if (character < L' ' || character == L'\x7F') {
            character = L'?';
        }
    }
    return text;
}

// The handle, or null and the reason.
struct LoadResult {
    void* handle = nullptr;
    std::wstring failureReason;
};

// `missingFolder` is the reason when the loader cannot be given the folder.
LoadResult LoadFromFolder(const std::string& folder, const std::string& fileName,
                          const char* missingFolder) {
    const std::string loaderFolder = LoaderFolder(folder);
    if (loaderFolder.empty()) {
        return {.failureReason = OneLine(folder + fileName + ": " + missingFolder)};
    }
    const std::string path = loaderFolder + fileName;
    if (void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        return {.handle = handle, .failureReason = {}};
    }
    const char* error = dlerror();
    std::string_view reason = error == nullptr ? "unknown reason" : error;
    // The loader names the file, too, unless it lacks another one that the library needs.
    if (const std::string named = path + ": "; reason.starts_with(named)) {
        reason.remove_prefix(named.size());
    }
    return {.failureReason = OneLine(folder + fileName + ": " + std::string(reason))};
}

}  // namespace

SharedLibrary SharedLibrary::Load(const std::string& fileName) {
    LoadResult result =
        LoadFromFolder(ProgramFolder(), fileName, "the program's folder cannot be found");
    return {result.handle, std::move(result.failureReason)};
}

SharedLibrary SharedLibrary::LoadFrom(const std::filesystem::path& file) {
    std::error_code ignored;
    const std::filesystem::path whole = std::filesystem::absolute(file, ignored);
    LoadResult result = LoadFromFolder(whole.parent_path() / "", whole.filename(),
                                       "the library's folder cannot be found");
    return {result.handle, std::move(result.failureReason)};
}

void* SharedLibrary::Resolve(const char* symbol) const {
    return handle_ == nullptr ? nullptr : dlsym(handle_, symbol);
}

}  // namespace tavro::platform
