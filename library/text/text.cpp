#include "library/text/text.h"

namespace tavrolib {
namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t FirstByteCharacter = 0xF780;
constexpr char32_t LastByteCharacter = 0xF7FF;
constexpr char32_t ByteCharacterBase = 0xF700;

struct Decoded {
    char32_t character = 0;
    std::size_t length = 0;  // 0: the first byte is not part of valid UTF-8
};

unsigned ByteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

bool IsSurrogate(char32_t character) {
    return character >= 0xD800 && character <= 0xDFFF;
}

// Overlong forms, surrogates and what lies beyond U+10FFFF are not valid.
Decoded DecodeFirst(std::string_view text) {
    const unsigned first = ByteAt(text, 0);
    if (first < 0x80) {
        return {first, 1};
    }
    std::size_t length = 0;
    char32_t smallest = 0;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
        smallest = 0x80;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        smallest = 0x800;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        smallest = 0x10000;
    } else {
        return {};
    }
    if (text.size() < length) {
        return {};
    }
    char32_t character = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned next = ByteAt(text, i);
        if ((next & 0xC0U) != 0x80U) {
            return {};
        }
        character = (character << 6U) | (next & 0x3FU);
    }
    if (character < smallest || character > 0x10FFFF || IsSurrogate(character)) {
        return {};
    }
    return {character, length};
}

void AppendUtf8(char32_t character, std::string& text) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | (character >> 6U));
        append(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        append(0xE0U | (character >> 12U));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    } else {
        append(0xF0U | (character >> 18U));
        append(0x80U | ((character >> 12U) & 0x3FU));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    }
}

void AppendWide(char32_t character, std::wstring& text) {
    if (sizeof(wchar_t) == 2 && character > 0xFFFF) {
        const char32_t rest = character - 0x10000;
        text += static_cast<wchar_t>(0xD800U + (rest >> 10U));
        text += static_cast<wchar_t>(0xDC00U + (rest & 0x3FFU));
    } else {
        text += static_cast<wchar_t>(character);
    }
}

char32_t UnitAt(std::wstring_view text, std::size_t index) {
    const auto unit = static_cast<char32_t>(text[index]);
    return sizeof(wchar_t) == 2 ? unit & 0xFFFFU : unit;
}

}  // namespace

std::wstring WideFromUtf8(std::string_view text) {
    std::wstring wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = DecodeFirst(text);
        AppendWide(decoded.length == 0 ? Replacement : decoded.character, wide);
        text.remove_prefix(decoded.length == 0 ? 1 : decoded.length);
    }
    return wide;
}

std::string Utf8FromWide(std::wstring_view text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = UnitAt(text, i);
        if (character >= 0xD800 && character <= 0xDBFF && i + 1 < text.size()) {
            const char32_t low = UnitAt(text, i + 1);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                character = 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00);
                ++i;
            }
        }
        AppendUtf8(character > 0x10FFFF || IsSurrogate(character) ? Replacement : character,
                   narrow);
    }
    return narrow;
}

std::string Utf8FromBytes(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded decoded = DecodeFirst(bytes);
        const bool standsForByte =
            decoded.character >= FirstByteCharacter && decoded.character <= LastByteCharacter;
        if (decoded.length == 0 || standsForByte) {
            AppendUtf8(ByteCharacterBase + ByteAt(bytes, 0), text);
            bytes.remove_prefix(1);
        } else {
            text += bytes.substr(0, decoded.length);
            bytes.remove_prefix(decoded.length);
        }
    }
    return text;
}

std::string BytesFromUtf8(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = DecodeFirst(text);
        const std::size_t length = decoded.length == 0 ? 1 : decoded.length;
        if (decoded.character >= FirstByteCharacter && decoded.character <= LastByteCharacter) {
            bytes += static_cast<char>(decoded.character & 0xFFU);
        } else {
            bytes += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return bytes;
}

std::wstring Quoted(std::string_view bytes) {
    return L'"' + WideFromUtf8(Utf8FromBytes(bytes)) + L'"';
}

}  // namespace tavrolib
