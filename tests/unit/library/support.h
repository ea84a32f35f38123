#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#ifdef __linux__
#include <sys/resource.h>
#endif

namespace tavrolib_test {

// The locale of most sessions under test.
inline const std::wstring EnglishLocale = L"en_US.UTF-8";

// Sets an environment variable and gives it its former value back when destroyed.
class Variable {
  public:
    Variable(const char* name, const std::string& value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    std::string name_;
    std::string former_;
};

// An empty folder that is removed with all it holds when destroyed.
class Folder {
  public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path operator/(const char* name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

void Write(const std::filesystem::path& file, std::string_view content);

// The file's content; fails the test when there is no such file.
std::string Read(const std::filesystem::path& file);

// The file's lines without their line ends.
std::vector<std::string> Lines(const std::filesystem::path& file);

// The files of the folder whose names end in ".new", as those do that are to take another's place.
std::vector<std::filesystem::path> NewFilesIn(const std::filesystem::path& folder);

// Whether the file's owner, and nobody else but Windows itself, may read and write it.
bool IsOwnersOnly(const std::filesystem::path& file);

// Whether this process, or on Windows any, has the file open.
bool IsOpen(const std::filesystem::path& file);

#ifdef __linux__
// As if the disk became full: lets no file grow beyond this size while it lives.
class FullDisk {
  public:
    explicit FullDisk(rlim_t size);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit former_{};
    void (*formerAction_)(int);
};
#endif

}  // namespace tavrolib_test
