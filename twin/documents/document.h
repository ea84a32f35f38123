#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "library/platform/file.h"

// The documents and texts that tavrohost reads and writes, in UTF-8.
namespace tavrohost {

// What stands for standard input or output in the place of a file name.
inline constexpr std::string_view StandardStream = "-";

// The path of the file of that name (UTF-8).
std::filesystem::path PathOfDocument(const std::string& name);

// The whole content of the file of that name (UTF-8), or of standard input for "-". Since it can
// hold secrets, the process leaves no core from then on. Throws
// TroubleError when there is no such file, and tavrolib::platform::FileError when it cannot be read
// (see ReadWholeFile).
std::string ReadDocument(const std::string& name);

// Puts a file with this content in the place of `name` (UTF-8), which only the user of this process
// can read, whoever could read a file of that name; writes to standard output for "-" and for a
// name of it, and into a pipe or a device. Throws tavrolib::platform::FileError or TroubleError
// when that is impossible; a file is then as it was.
void WriteDocument(const std::string& name, std::string_view content);

// A file that is read and then replaced: nobody else who takes the lock of such a file changes it
// meanwhile. The lock is a file of the same name with ".lock" appended.
class LockedDocument {
  public:
    // `name` is UTF-8 and may be a link to the file. Throws FileError when the lock cannot be had
    // within ten seconds, and when there is something else than a file.
    explicit LockedDocument(const std::string& name);

    // See WriteDocument.
    void Replace(std::string_view content) const;

  private:
    std::filesystem::path file_;
    tavrolib::platform::FileLock lock_;
};

// Writes a result to standard output: on a terminal without control characters that would act on
// it, elsewhere as it is. Line ends are "\n" in `text`. Throws TroubleError when it cannot be
// written.
void WriteOutput(std::string_view text);

// Writes to standard error what is no result, as it stands.
void WriteDiagnostic(std::string_view text);

// Writes "tavrohost: <sentence>" to standard error.
void Complain(std::string_view sentence);

}  // namespace tavrohost
