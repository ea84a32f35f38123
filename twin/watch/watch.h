#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "mgmt/library.h"
#include "twin/watch/journal.h"

namespace tavrohost {

// Stands between the program and its library and writes a journal: every call but those that fetch
// message texts, without the records that travel. The program and the library see no difference,
// with one exception: where the last call failed and the program did not ask why, the library is
// asked once before it is uninitialized. One at a time in a process.
class Watch {
  public:
    Watch(const tavro::LibrarySource& library, const std::filesystem::path& journalFile);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    // The library with this in front.
    tavro::LibrarySource Watched() const;

    // The number of the message that was fetched last of those whose text, or its last line, stands
    // in `line`; nothing when none of them does. Only the last few messages are known.
    std::optional<std::uint32_t> MessageIn(std::wstring_view line) const;

    // Asks the library why the last call failed, unless that is known. What the library does
    // instead of an answer is of no account, an exception neither.
    void AskWhy();

    JournalWriter& Writer() { return writer_; }

    // For what stands in the place of the entry points.
    void* Find(const char* name) const { return library_.find(name); }
    void Begin(const WatchedCall& call);
    void End(std::uint32_t status, std::optional<std::int64_t> completionCode, bool isIncomplete);
    void NoteError(std::uint32_t status, const tavroapi::ErrorRecord& error);
    void NoteMessage(std::uint32_t number, std::wstring text);

  private:
    tavro::LibrarySource library_;
    JournalWriter writer_;
    bool wantsToKnowWhy_ = false;
    std::deque<std::pair<std::uint32_t, std::wstring>> messages_;  // the last one in front
};

}  // namespace tavrohost
