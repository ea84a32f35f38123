#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/file.h"

namespace tavro::platform {
namespace {

class OpenHandle {
  public:
    explicit OpenHandle(HANDLE opened = INVALID_HANDLE_VALUE) : value_(opened) {}
    ~OpenHandle() {
        if (IsOpen()) {
            CloseHandle(value_);
        }
    }
    OpenHandle(OpenHandle&& other) noexcept
        : value_(std::exchange(other.value_, INVALID_HANDLE_VALUE)) {}
    OpenHandle& operator=(OpenHandle&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;

    HANDLE Value() const { return value_; }
    bool IsOpen() const { return value_ != INVALID_HANDLE_VALUE; }

  private:
    HANDLE value_;
};

OpenHandle Open(const std::wstring& path, DWORD access, DWORD creation, DWORD flags) {
    OpenHandle file(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                creation, FILE_ATTRIBUTE_NORMAL | flags, nullptr));
    return file.IsOpen() && GetFileType(file.Value()) == FILE_TYPE_DISK ? std::move(file)
                                                                        : OpenHandle();
}

// What cannot be told counts as a reparse point.
bool IsReparsePoint(const OpenHandle& file) {
    BY_HANDLE_FILE_INFORMATION information{};
    return GetFileInformationByHandle(file.Value(), &information) == 0 ||
           (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace

struct RegularFile::Handle {
    OpenHandle file;
};

RegularFile::RegularFile() = default;
RegularFile::~RegularFile() = default;
RegularFile::RegularFile(RegularFile&& other) noexcept = default;
RegularFile& RegularFile::operator=(RegularFile&& other) noexcept = default;

RegularFile::RegularFile(Handle opened)
    : handle_(opened.file.IsOpen() ? std::make_unique<Handle>(std::move(opened)) : nullptr) {}

RegularFile RegularFile::OpenForReading(const std::wstring& path) {
    return RegularFile(Handle{Open(path, GENERIC_READ, OPEN_EXISTING, 0)});
}

RegularFile RegularFile::OpenForAppend(const std::wstring& path) {
    OpenHandle file = Open(path, FILE_APPEND_DATA, OPEN_ALWAYS, FILE_FLAG_OPEN_REPARSE_POINT);
    if (file.IsOpen() && IsReparsePoint(file)) {
        return {};
    }
    return RegularFile(Handle{std::move(file)});
}

std::optional<std::uint64_t> RegularFile::Size() const {
    LARGE_INTEGER size{};
    if (GetFileSizeEx(handle_->file.Value(), &size) == 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t RegularFile::Read(char* bytes, std::size_t count) {
    constexpr std::size_t LargestRead = 1U << 20U;
    DWORD got = 0;
    const auto size = static_cast<DWORD>(std::min(count, LargestRead));
    return ReadFile(handle_->file.Value(), bytes, size, &got, nullptr) == 0 ? 0 : got;
}

}  // namespace tavro::platform
