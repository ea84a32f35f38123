#include "platform/encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

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

// How many ASCII characters stand together at the front. Several at a time.
std::size_t CountAscii(std::wstring_view text) {
    constexpr std::size_t Several = 16;
    std::size_t count = 0;
    for (; text.size() - count >= Several; count += Several) {
        char32_t bits = 0;
        for (const wchar_t unit : text.substr(count, Several)) {
            bits |= UnitValue(unit);
        }
        if (bits >= 0x80) {
            break;
        }
    }
    while (count < text.size() && UnitValue(text[count]) < 0x80) {
        ++count;
    }
    return count;
}

// Appends the ASCII characters at the front of the text, and takes them off it.
void TakeAscii(std::wstring_view& text, std::string& bytes) {
    const std::size_t count = CountAscii(text);
    const std::size_t former = bytes.size();
    bytes.resize(former + count);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count),
                   bytes.begin() + static_cast<std::ptrdiff_t>(former),
                   [](wchar_t unit) { return static_cast<char>(unit); });
    text.remove_prefix(count);
}

// Appends the text's bytes. False when not each of its characters is among them: '?' stands for
// those that `append` refuses.
template <typename Append>
bool EncodeWith(std::wstring_view text, std::string& bytes, Append append) {
    bool isExact = true;
    for (TakeAscii(text, bytes); !text.empty(); TakeAscii(text, bytes)) {
        const char32_t character = TakeCharacter(text);
        if (character == NoCharacter || !append(character, bytes)) {
            bytes += '?';
            isExact = false;
        }
    }
    return isExact;
}

bool Encode(std::wstring_view text, unsigned codePage, std::string& bytes) {
    if (codePage == Utf8CodePage) {
        return EncodeWith(text, bytes, [](char32_t character, std::string& encoded) {
            AppendUtf8(character, encoded);
            return true;
        });
    }
    CodePageEncoder encoder(codePage);
    return EncodeWith(text, bytes, [&encoder](char32_t character, std::string& encoded) {
        return encoder.Append(character, encoded);
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

void AppendEncoded(std::wstring_view text, unsigned codePage, std::string& bytes) {
    Encode(text, codePage, bytes);
}

std::string EncodeText(std::wstring_view text, unsigned codePage) {
    std::string bytes;
    bytes.reserve(text.size());
    Encode(text, codePage, bytes);
    return bytes;
}

std::optional<std::string> EncodeExactly(std::wstring_view text, unsigned codePage) {
    std::string bytes;
    bytes.reserve(text.size());
    if (!Encode(text, codePage, bytes)) {
        return std::nullopt;
    }
    return bytes;
}

bool IsAscii(std::string_view bytes) {
    return CountAscii(bytes) == bytes.size();
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
