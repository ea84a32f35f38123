#include "unit/library/support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#ifdef _WIN32
#include <windows.h>

#include <aclapi.h>
#endif

namespace tavrolib_test {
namespace {

void Set(const std::string& name, const std::string& value) {
#ifdef _WIN32
    _putenv_s(name.c_str(), value.c_str());
#else
    if (value.empty()) {
        unsetenv(name.c_str());
    } else {
        setenv(name.c_str(), value.c_str(), 1);
    }
#endif
}

std::string Get(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

Variable::Variable(const char* name, const std::string& value) : name_(name), former_(Get(name)) {
    Set(name_, value);
}

Variable::~Variable() {
    Set(name_, former_);
}

Folder::Folder() {
    static std::atomic<int> count = 0;
    const auto base = std::filesystem::temp_directory_path();
    do {
        path_ = base / ("tavro_test_" + std::to_string(++count));
    } while (!std::filesystem::create_directory(path_));
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void Write(const std::filesystem::path& file, std::string_view content) {
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    ASSERT_TRUE(stream.good());
}

std::string Read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> NewFilesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".new") {
            files.push_back(entry.path());
        }
    }
    return files;
}

std::vector<std::string> Lines(const std::filesystem::path& file) {
    std::istringstream stream(Read(file));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool IsOwnersOnly(const std::filesystem::path& file) {
#ifdef _WIN32
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(file.c_str(), SE_FILE_OBJECT,
                              OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
                              nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS ||
        list == nullptr) {
        return false;
    }
    bool ownersOnly = list->AceCount > 0;
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        GetAce(list, i, &entry);
        auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        ownersOnly = ownersOnly && allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
                     (EqualSid(&allowed->SidStart, owner) != 0 ||
                      IsWellKnownSid(&allowed->SidStart, WinLocalSystemSid) != 0);
    }
    LocalFree(descriptor);
    return ownersOnly;
#else
    using std::filesystem::perms;
    return std::filesystem::status(file).permissions() == (perms::owner_read | perms::owner_write);
#endif
}

bool IsOpen(const std::filesystem::path& file) {
#ifdef _WIN32
    const HANDLE alone =
        CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (alone == INVALID_HANDLE_VALUE) {
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION)) << file;
        return true;
    }
    CloseHandle(alone);
    return false;
#else
    const auto wanted = std::filesystem::canonical(file);
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(descriptor.path(), gone) == wanted) {
            return true;
        }
    }
    return false;
#endif
}

#ifdef __linux__
FullDisk::FullDisk(rlim_t size) : formerAction_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{size, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
}

FullDisk::~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, formerAction_);
}
#endif

}  // namespace tavrolib_test
