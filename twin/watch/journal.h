#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/json/json.h"
#include "tavroapi/inventory_records.h"

// What a watched run leaves behind in a file, line by line, so that it is there when the run ends
// in the middle.
namespace tavrohost {

// One call of the library. Narrow texts are bytes as the program has them.
struct WatchedCall {
    std::string entryPoint;  // without its prefix
    std::optional<std::uint32_t> operation{};
    std::string operationName{};  // empty when the operation is unknown
    std::optional<std::string> request{};
    std::optional<std::string> adapter{};
    std::optional<std::string> port{};
    // Nothing while the call has not come back.
    std::optional<std::uint32_t> status{};
    // What the library left in the record, if it is of those that have room for it.
    std::optional<std::int64_t> completionCode{};
    // The call returned 0, yet its records tell that not all was done.
    bool isIncomplete = false;

    bool operator==(const WatchedCall&) const = default;
};

// The call as JSON, its texts in UTF-8; without what it does not have.
tavrolib::Json JsonOf(const WatchedCall& call);

// Writes the file. After a failure to write nothing more is written, not even the closing line, and
// the run goes on as if nobody watched.
class JournalWriter {
  public:
    explicit JournalWriter(const std::filesystem::path& file);

    void Begin(const WatchedCall& call);
    // The call that was begun last and has not come back yet.
    void End(std::uint32_t status, std::optional<std::int64_t> completionCode,
             bool isIncomplete = false);
    void NoteError(const tavroapi::ErrorRecord& error);
    // Why there is no library.
    void NoteNoLibrary(std::wstring_view reason);
    // Why the run was abandoned, as one sentence in UTF-8.
    void NoteTrouble(std::string_view sentence);
    // Nothing more comes. Without that the journal does not count as whole.
    void Close();

  private:
    void Write(const tavrolib::Json& line);

    std::ofstream stream_;
};

// What the file tells.
struct Journal {
    std::vector<WatchedCall> calls{};
    // The last error that the library told of, as JSON with the members of ErrorRecord.
    std::optional<tavrolib::Json> error{};
    // The call right before the library was asked for that error, by its place in `calls`.
    std::optional<std::size_t> errorCall{};
    // Both in UTF-8; nothing when there is nothing to tell. Of several troubles the first.
    std::optional<std::string> noLibrary;
    std::optional<std::string> trouble;
    // It was written to its end.
    bool isWhole = false;
};

// Reads a journal; one that is not there is empty, and a last line that is cut off does not count.
Journal ReadJournal(const std::filesystem::path& file);

}  // namespace tavrohost
