#include "platform/control_characters.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/encoding.h"

namespace tavro::platform {
namespace {

constexpr bool IsForeignControl(char32_t character) {
    return character < 0x20 ? character != U'\t' && character != U'\n'
                            : character >= 0x7F && character <= 0x9F;
}

constexpr char32_t NumberOf(char byte) {
    return static_cast<unsigned char>(byte);
}

}  // namespace

std::wstring MaskControlCharacters(std::wstring_view text) {
    std::wstring masked(text);
    std::replace_if(
        masked.begin(), masked.end(),
        [](wchar_t unit) { return IsForeignControl(static_cast<char32_t>(unit)); }, L'?');
    return masked;
}

std::string MaskControlCharacters(std::string_view bytes) {
    std::string masked;
    masked.reserve(bytes.size());
    while (!bytes.empty()) {
        std::string_view taken = bytes;
        const std::optional<char32_t> character = TakeUtf8(bytes);
        taken.remove_suffix(bytes.size());
        if (!character) {
            std::replace_copy_if(
                taken.begin(), taken.end(), std::back_inserter(masked),
                [](char byte) { return IsForeignControl(NumberOf(byte)); }, '?');
        } else if (IsForeignControl(*character)) {
            masked += '?';
        } else {
            masked += taken;
        }
    }
    return masked;
}

}  // namespace tavro::platform
