#include "library/messages/catalogue.h"

#include <algorithm>

namespace tavrolib {

std::span<const Message> Catalogue(Language language) {
    switch (language) {
        case Language::Japanese:
            return JapaneseMessages();
        case Language::Chinese:
            return ChineseMessages();
        case Language::English:
            break;
    }
    return EnglishMessages();
}

const wchar_t* FindMessage(Language language, std::uint32_t id) {
    const auto messages = Catalogue(language);
    const auto found = std::lower_bound(
        messages.begin(), messages.end(), id,
        [](const Message& message, std::uint32_t wanted) { return message.id < wanted; });
    return found == messages.end() || found->id != id ? nullptr : found->text;
}

}  // namespace tavrolib
