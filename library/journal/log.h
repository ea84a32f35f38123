#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "library/calls/call.h"
#include "library/platform/file.h"

namespace tavrolib {

// The readable log of the library's calls. No record is ever written to it, so no secret is
// either.
class Log {
  public:
    // Switches the log on, which is off at first. A file that cannot be opened, is no regular
    // file, or is a link that somebody else laid (on Windows, any link) leaves it off. The first
    // line is what the library says of itself.
    void Open(const std::filesystem::path& path, std::wstring_view library);

    // Switches the log off.
    void Close() { file_.reset(); }

    // Writes the line of a call that is over; `error` is the error that it set, null for none.
    void Write(const Call& call, std::uint32_t status, const tavroapi::ErrorRecord* error);

  private:
    void WriteLine(const std::string& text);

    std::optional<platform::AppendFile> file_;
};

}  // namespace tavrolib
