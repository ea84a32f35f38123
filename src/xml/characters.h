// The classes of characters that XML 1.0 (fifth edition) tells apart.
#pragma once

#include <array>
#include <cstdint>

#include "platform/encoding.h"

namespace tavro::xml {

// Classes of ASCII characters, as bits. The "plain" ones are what a scan may step over unseen: no
// line ends, no end marks, nothing that is replaced or refused.
enum CharacterClass : std::uint8_t {
    NameStart = 1,
    NamePart = 2,
    PlainInText = 4,
    PlainInValue = 8,
    PlainInRegion = 16,
};

inline constexpr char32_t AsciiEnd = 0x80;

namespace detail {

constexpr std::uint8_t ClassesOf(char32_t character) {
    const bool letter = (character >= U'a' && character <= U'z') ||
                        (character >= U'A' && character <= U'Z') || character == U'_' ||
                        character == U':';
    const bool namePart = letter || (character >= U'0' && character <= U'9') || character == U'-' ||
                          character == U'.';
    const bool printable = character >= 0x20;
    const bool markup = character == U'<' || character == U'&';
    unsigned classes = 0;
    const auto add = [&classes](bool belongs, CharacterClass characterClass) {
        classes |= belongs ? static_cast<unsigned>(characterClass) : 0U;
    };
    add(letter, NameStart);
    add(namePart, NamePart);
    const bool inLine = printable || character == U'\t';
    add(inLine && !markup && character != U']', PlainInText);
    add(inLine && !markup && character != U'"' && character != U'\'', PlainInValue);
    add(inLine, PlainInRegion);
    return static_cast<std::uint8_t>(classes);
}

constexpr std::array<std::uint8_t, AsciiEnd> MakeClassTable() {
    std::array<std::uint8_t, AsciiEnd> table{};
    for (char32_t character = 0; character < AsciiEnd; ++character) {
        table[character] = ClassesOf(character);
    }
    return table;
}

inline constexpr std::array<std::uint8_t, AsciiEnd> ClassTable = MakeClassTable();

}  // namespace detail

using platform::UnitValue;

// Whether the unit is an ASCII character of the class.
constexpr bool IsAscii(wchar_t unit, CharacterClass characterClass) {
    const char32_t value = UnitValue(unit);
    return value < AsciiEnd && (detail::ClassTable[value] & characterClass) != 0;
}

// Whether a document may hold the character.
constexpr bool IsCharacter(char32_t character) {
    if (character < 0x20) {
        return character == U'\t' || character == U'\n' || character == U'\r';
    }
    return character < 0xD800 || (character >= 0xE000 && character <= 0xFFFD) ||
           (character >= 0x10000 && character <= 0x10FFFF);
}

// Whether a name may begin with the character, or hold it.
bool IsNameStart(char32_t character);
bool IsNamePart(char32_t character);

// A character of a text, and the units that it takes.
struct CharacterHere {
    char32_t character;
    unsigned unitCount;
};

// The character at the place in zero-terminated wide text. Where wide text is UTF-16 a surrogate
// pair is one character; half a pair comes back as it stands, and IsCharacter refuses it.
constexpr CharacterHere ReadCharacter(const wchar_t* at) {
    const char32_t unit = UnitValue(at[0]);
    if constexpr (sizeof(wchar_t) == 2) {
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            const char32_t low = UnitValue(at[1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                return {0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00), 2};
            }
        }
    }
    return {unit, 1};
}

}  // namespace tavro::xml
