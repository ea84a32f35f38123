#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

// The file work that differs between the platforms. Failures are thrown as FileError.
namespace tavrolib::platform {

// What could not be done to which file, and the system's reason.
class FileError : public std::runtime_error {
  public:
    explicit FileError(std::wstring text)
        : std::runtime_error("file error"), text_(std::move(text)) {}
    const std::wstring& Text() const { return text_; }

  private:
    std::wstring text_;
};

// What is read here, or appended to, is at most so large.
inline constexpr std::uintmax_t LargestFile = std::uintmax_t{64} << 20;

// How long an AppendFile waits for its turn.
inline constexpr std::chrono::milliseconds AppendPatience{100};

// The whole content of the file; nothing when there is no such file. A folder, a pipe, a device, a
// socket and a file larger than LargestFile are refused before they are read; on Linux before they
// are opened, so that nobody at the other end notices.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

// The file that the path leads to where it is a symbolic link, which may be dangling where the
// platform allows that to be told; else the path itself.
std::filesystem::path WithoutLinks(std::filesystem::path path);

// Who may read a file that was there before; a new one is the owner's alone.
enum class Readers {
    AsBefore,
    // Others are shut out; where that cannot be done, the file is refused.
    OwnerOnly,
};

// Writes into what stands at the path, links followed, where it is no file but a pipe or a device
// that takes a stream, and waits until a pipe is read. Returns false and does nothing where there
// is something else, or nothing. Throws where it cannot be written, and for a terminal, on which
// the content might act. Writing to nobody fails where SIGPIPE is ignored.
bool WriteToStream(const std::filesystem::path& path, std::string_view content);

// Whether the path, links followed, leads to what standard output goes to. Never on Windows, where
// standard output has no path.
bool IsStandardOutput(const std::filesystem::path& path);

// The file that has to be replaced in order to replace what the path leads to. Links are followed
// as the system follows them, which it may refuse to (a link of somebody else in a folder of all);
// on Linux one that leads nowhere makes an empty file. Throws where something stands there that is
// no regular file, or it cannot be looked at.
std::filesystem::path FileToReplace(const std::filesystem::path& path);

// Puts a file with this content in the place of `path`, which need not exist: a new file of a name
// that nobody can guess is written beside it, brought to the disk, and renamed, so that a crash
// leaves the old or the new content. It keeps owner, group and mode of the old one (on Windows its
// access list, and the owner where the user may give files away). Where these cannot be kept, and
// where there was none, only the owner can read it. With OwnerOnly nothing is kept, and the owner
// is who runs this process. Who puts something in a file's place that depends on what was in it
// holds a lock (FileLock).
void ReplaceContent(const std::filesystem::path& path, std::string_view content,
                    Readers readers = Readers::AsBefore);

// Makes the folder and those above it where they are missing; only the owner can enter a new one.
void MakeFolder(const std::filesystem::path& path);

// Holds a lock on a file, made when missing, until destroyed. Locks exclude one another within one
// process as well as between processes. Throws FileError when it cannot be had within `patience`.
class FileLock {
  public:
    // A lock file that has to be made gets owner, group and mode of the file `guarded`, so that
    // whoever may change that can also lock it; where there is none, it is the owner's alone.
    FileLock(const std::filesystem::path& path, std::chrono::milliseconds patience,
             const std::filesystem::path& guarded = {});
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

  private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

// Which files of a name an AppendFile takes. Only regular files, others are left alone.
enum class Accept {
    // Through whatever links, since somebody chose the path; at most LargestFile.
    RegularFiles,
    // A symbolic link in their place only when the user that runs this process owns it. On Windows
    // no link: what an administrator makes belongs to a group there, and an owner says too little.
    OwnRegularFiles,
};

// A file that only grows; several programs may append to it at once. Made when missing. Throws
// FileError with the reason when the file is not taken.
class AppendFile {
  public:
    AppendFile(const std::filesystem::path& path, Accept accept,
               Readers readers = Readers::AsBefore);
    ~AppendFile();
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;

    // Appends the text with one write, when its turn among those that append has come, or after
    // AppendPatience. A failure is ignored, since a record of calls must not disturb them; what was
    // written of the text by then is taken away again when it was the text's turn, unless another
    // program has appended behind it.
    void Append(std::string_view text);

  private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

}  // namespace tavrolib::platform
