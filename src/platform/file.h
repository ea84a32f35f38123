// Files named by wide paths. Only regular files are opened: a pipe, a device or a directory of that
// name is left alone, so that nobody waits for its other end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace tavro::platform {

// Owns an open regular file, which others may read and write meanwhile. Outside Windows the paths'
// bytes are UTF-8.
class RegularFile {
  public:
    // Owns nothing.
    RegularFile();
    ~RegularFile();
    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&& other) noexcept;
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;

    // Opens the file to be read. Not open when it is missing, not allowed, or no regular file.
    static RegularFile OpenForReading(const std::wstring& path);

    // Opens the file for append, made when missing. A symbolic link in its place is followed only
    // when the user that runs this process owns the link, so that nobody else chooses the file; on
    // Windows it is never followed: what an administrator makes belongs to a group there, and an
    // owner says too little. Not open when that is not possible.
    static RegularFile OpenForAppend(const std::wstring& path);

    bool IsOpen() const { return handle_ != nullptr; }

    // How many bytes the open file holds; nothing when the system does not tell.
    std::optional<std::uint64_t> Size() const;

    // Reads some of the next bytes of the open file, at most `count`, and returns how many; 0 at
    // its end and after an error.
    std::size_t Read(char* bytes, std::size_t count);

  private:
    struct Handle;
    explicit RegularFile(Handle opened);
    std::unique_ptr<Handle> handle_;
};

// What became of ReadWholeFile.
enum class FileReadStatus { Done, CannotOpen, Empty, ReadFailed, TooLarge };

constexpr auto AnySize = std::numeric_limits<std::uint64_t>::max();

// The outcome of ReadWholeFile; `bytes` is empty unless the status is Done.
struct FileContents {
    FileReadStatus status = FileReadStatus::CannotOpen;
    std::string bytes;
};

// Reads the file in binary. CannotOpen: it cannot be opened for reading; Empty: it has no bytes;
// TooLarge: it has more than `most`, and nothing of it was read; ReadFailed: the system refused to
// read on or there is not enough memory for it. The bytes are in one allocation that was never
// moved, so a caller that wipes `bytes` leaves no copy behind.
FileContents ReadWholeFile(const std::wstring& path, std::uint64_t most = AnySize);

}  // namespace tavro::platform
