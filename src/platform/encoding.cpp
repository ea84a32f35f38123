#include "platform/encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/code_page.h"

namespace tavro::platform {
namespace {

constexpr char32_t Replacement = 0xFFFD;
constexpr char32_t NoCharacter = 0xFFFFFFFF;
constexpr bool WideIsUtf16 = sizeof(wchar_t) == 2;

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes the first character off the text; NoCharacter for a unit that is none.
char32_t TakeCharacter(std::wstring_view& text) {
    const char32_t unit = UnitValue(text.front());
    text.remove_prefix(1);
    if constexpr (WideIsUtf16) {
        if (IsHighSurrogate(unit) && !text.empty()) {
            const char32_t low = UnitValue(text.front());
            if (IsLowSurrogate(low)) {
                text.remove_prefix(1);
                return 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
            }
        }
    }
    if (IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit > 0x10FFFF) {
        return NoCharacter;
    }
    return unit;
}

void AppendWide(char32_t character, std::wstring& text) {
    if constexpr (WideIsUtf16) {
        if (character >= 0x10000) {
            text += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10U));
            text += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FFU));
            return;
        }
    }
    text += static_cast<wchar_t>(character);
}

void AppendUtf8(char32_t character, std::string& bytes) {
    const auto add = [&bytes](char32_t value) { bytes += static_cast<char>(value); };
    const auto addTrail = [&](unsigned shift) { add(0x80U | ((character >> shift) & 0x3FU)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0U | (character >> 6U));
        addTrail(0);
    } else if (character < 0x10000) {
        add(0xE0U | (character >> 12U));
        addTrail(6);
        addTrail(0);
    } else {
        add(0xF0U | (character >> 18U));
        addTrail(12);
        addTrail(6);
        addTrail(0);
    }
}

// The text's bytes, and whether each of its characters is among them: '?' stands for those that
// `append` refuses.
struct Encoded {
    std::string bytes;
    bool isExact = true;
};

template <typename Append>
Encoded EncodeWith(std::wstring_view text, Append append) {
    Encoded encoded;
    encoded.bytes.reserve(text.size());
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (character < 0x80) {
            encoded.bytes += static_cast<char>(character);
        } else if (character == NoCharacter || !append(character, encoded.bytes)) {
            encoded.bytes += '?';
            encoded.isExact = false;
        }
    }
    return encoded;
}

Encoded Encode(std::wstring_view text, unsigned codePage) {
    if (codePage == Utf8CodePage) {
        return EncodeWith(text, [](char32_t character, std::string& bytes) {
            AppendUtf8(character, bytes);
            return true;
        });
    }
    CodePageEncoder encoder(codePage);
    return EncodeWith(text, [&encoder](char32_t character, std::string& bytes) {
        return encoder.Append(character, bytes);
    });
}

// What may follow a lead byte: how many trail bytes, and the range of the first of them, which
// keeps out overlong forms, surrogates and numbers beyond the last character.
struct LeadByte {
    unsigned trailCount;
    std::uint8_t lowestFirst;
    std::uint8_t highestFirst;
};

constexpr LeadByte DescribeLead(std::uint8_t lead) {
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {2, static_cast<std::uint8_t>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<std::uint8_t>(lead == 0xED ? 0x9F : 0xBF)};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {3, static_cast<std::uint8_t>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<std::uint8_t>(lead == 0xF4 ? 0x8F : 0xBF)};
    }
    return {0, 0, 0};
}

// How many ASCII bytes stand together at the front. Eight at a time.
std::size_t CountAscii(std::string_view bytes) {
    std::size_t count = 0;
    for (std::uint64_t eight = 0; bytes.size() - count >= sizeof eight; count += sizeof eight) {
        std::memcpy(&eight, bytes.data() + count, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0) {
            break;
        }
    }
    while (count < bytes.size() && static_cast<std::uint8_t>(bytes[count]) < 0x80) {
        ++count;
    }
    return count;
}

// Takes ASCII characters off the bytes, a block at most, and tells whether there were any. A block
// at a time is several times faster than a character.
bool TakeAscii(std::string_view& bytes, std::wstring& text) {
    constexpr std::size_t Block = 4096;
    const std::string_view ascii = bytes.substr(0, CountAscii(bytes.substr(0, Block)));
    text.resize(text.size() + ascii.size());
    std::copy(ascii.begin(), ascii.end(), text.end() - static_cast<std::ptrdiff_t>(ascii.size()));
    bytes.remove_prefix(ascii.size());
    return !ascii.empty();
}

}  // namespace

std::string EncodeText(std::wstring_view text, unsigned codePage) {
    return Encode(text, codePage).bytes;
}

std::optional<std::string> EncodeExactly(std::wstring_view text, unsigned codePage) {
    Encoded encoded = Encode(text, codePage);
    if (!encoded.isExact) {
        return std::nullopt;
    }
    return std::move(encoded.bytes);
}

std::optional<char32_t> TakeUtf8(std::string_view& bytes) {
    const auto lead = static_cast<std::uint8_t>(bytes.front());
    bytes.remove_prefix(1);
    if (lead < 0x80) {
        return lead;
    }
    const LeadByte expected = DescribeLead(lead);
    if (expected.trailCount == 0) {
        return std::nullopt;
    }
    char32_t character = lead & (0x3FU >> expected.trailCount);
    for (unsigned index = 0; index < expected.trailCount; ++index) {
        if (bytes.empty()) {
            return std::nullopt;
        }
        const auto trail = static_cast<std::uint8_t>(bytes.front());
        if (trail < (index == 0 ? expected.lowestFirst : 0x80) ||
            trail > (index == 0 ? expected.highestFirst : 0xBF)) {
            return std::nullopt;
        }
        character = (character << 6U) | (trail & 0x3FU);
        bytes.remove_prefix(1);
    }
    return character;
}

std::wstring DecodeUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        if (!TakeAscii(bytes, text)) {
            AppendWide(TakeUtf8(bytes).value_or(Replacement), text);
        }
    }
    return text;
}

std::optional<std::wstring> DecodeText(std::string_view bytes, unsigned codePage) {
    if (codePage == Utf8CodePage) {
        return DecodeUtf8(bytes);
    }
    return DecodeByTable(bytes, codePage);
}

}  // namespace tavro::platform
