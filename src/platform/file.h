// Reading a whole file named by a wide path.
#pragma once

#include <string>

namespace tavro::platform {

// What became of ReadWholeFile.
enum class FileReadStatus { Done, CannotOpen, Empty, ReadFailed };

// The outcome of ReadWholeFile; `bytes` is empty unless the status is Done.
struct FileContents {
    FileReadStatus status = FileReadStatus::CannotOpen;
    std::string bytes;
};

// Reads the file in binary; outside Windows the path's bytes are UTF-8. CannotOpen: missing, not
// allowed, or a directory; Empty: it has no bytes; ReadFailed: the system refused to read on or
// there is not enough memory for it. The bytes are in one allocation that was never moved, so a
// caller that wipes `bytes` leaves no copy behind.
FileContents ReadWholeFile(const std::wstring& path);

}  // namespace tavro::platform
