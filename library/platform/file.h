#pragma once

#include <chrono>
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

// The whole content of the file; nothing when there is no such file.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

// The file that the path leads to where it is a symbolic link, which may be dangling where the
// platform allows that to be told; else the path itself.
std::filesystem::path WithoutLinks(std::filesystem::path path);

// Puts a file with this content in the place of `path`, which need not exist: a new file is
// written beside it, brought to the disk, and renamed, so that a crash leaves the old or the new
// content. Only the owner can read the new file. Callers hold a lock: two of them must not replace
// the same file at once.
void ReplaceContent(const std::filesystem::path& path, std::string_view content);

// Makes the folder and those above it where they are missing; only the owner can enter a new one.
void MakeFolder(const std::filesystem::path& path);

// Holds a lock on a file, made when missing, until destroyed. Locks exclude one another within one
// process as well as between processes. Throws FileError when it cannot be had within `patience`.
class FileLock {
  public:
    FileLock(const std::filesystem::path& path, std::chrono::milliseconds patience);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

  private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

// Which files of a name an AppendFile takes.
enum class Accept {
    // Whatever can be opened, a pipe or a device as well: somebody chose the path.
    Everything,
    // Regular files, others are left alone; and a symbolic link in their place only when the user
    // that runs this process owns it. On Windows no link: what an administrator makes belongs to a
    // group there, and an owner says too little.
    OwnRegularFiles,
};

// A file that only grows; several programs may append to it at once. Made when missing, readable
// by the owner only.
class AppendFile {
  public:
    AppendFile(const std::filesystem::path& path, Accept accept);
    ~AppendFile();
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;

    // Appends the text with one write; a failure is ignored, since a record of calls must not
    // disturb them.
    void Append(std::string_view text);

  private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

}  // namespace tavrolib::platform
