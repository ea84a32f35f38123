#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavro {

// Widens a narrow text byte by byte: each byte becomes the code unit of the same value, whatever
// the code page.
std::wstring ToWide(std::string_view text);

// The low byte of a wide unit.
char NarrowUnit(wchar_t unit);

// Narrows a wide text unit by unit: each unit keeps its low byte.
std::string ToNarrow(std::wstring_view text);

// The text without the blanks at both ends. Only ' ' is a blank.
std::string_view WithoutOuterBlanks(std::string_view text);

// The whole number at the start of a text as C's atoi reads it: leading white space and one sign
// are taken, what follows the digits is ignored, no digits give 0. A number outside 32 bits gives
// the nearest bound.
std::int32_t LeadingInteger(std::string_view text);

}  // namespace tavro
