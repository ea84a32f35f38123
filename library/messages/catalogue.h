#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tavrolib {

// One message: its id and its text.
struct Message {
    std::uint32_t id;
    const wchar_t* text;
};

enum class Language { English, Japanese, Chinese };

// All messages of a language, sorted by id.
std::span<const Message> Catalogue(Language language);

// The text of a message; null when the id is unknown.
const wchar_t* FindMessage(Language language, std::uint32_t id);

// Whether the ids rise from row to row. Every table asserts it, since texts are found by binary
// search.
template <std::size_t Count>
constexpr bool IsSortedById(const Message (&messages)[Count]) {
    for (std::size_t i = 1; i < Count; ++i) {
        if (messages[i - 1].id >= messages[i].id) {
            return false;
        }
    }
    return true;
}

// The table of each language, in its own source file.
std::span<const Message> EnglishMessages();
std::span<const Message> JapaneseMessages();
std::span<const Message> ChineseMessages();

}  // namespace tavrolib
