#include "xml/characters.h"

#include <algorithm>

namespace tavro::xml {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Beyond ASCII, whose classes are in the table.
constexpr Range NameStartRanges[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};

constexpr Range FurtherNameRanges[] = {
    {0xB7, 0xB7},
    {0x300, 0x36F},
    {0x203F, 0x2040},
};

template <std::size_t Count>
bool IsWithin(const Range (&ranges)[Count], char32_t character) {
    return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

}  // namespace

bool IsNameStart(char32_t character) {
    if (character < AsciiEnd) {
        return IsAscii(static_cast<wchar_t>(character), NameStart);
    }
    return IsWithin(NameStartRanges, character);
}

bool IsNamePart(char32_t character) {
    if (character < AsciiEnd) {
        return IsAscii(static_cast<wchar_t>(character), NamePart);
    }
    return IsNameStart(character) || IsWithin(FurtherNameRanges, character);
}

}  // namespace tavro::xml
