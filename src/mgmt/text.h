#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavro {

// Widens a narrow text byte by byte: each byte becomes the code unit of the same value, whatever
// the code page.
std::wstring ToWide(std::string_view text);

// How many units the text has as UTF-16, which it is not on every system: what lengths of texts are
// counted in, so that they are the same everywhere.
std::size_t Utf16Length(std::wstring_view text);

// Narrows a wide text unit by unit: each unit of its UTF-16 form keeps its low byte.
std::string ToNarrow(std::wstring_view text);

// Appends the narrowed text. Never moves what `narrow` holds if it has room for Utf16Length(text)
// bytes more.
void AppendNarrow(std::wstring_view text, std::string& narrow);

// The text without the blanks at both ends. Only ' ' is a blank.
std::string_view WithoutOuterBlanks(std::string_view text);

// The whole number at the start of a text as C's atoi reads it: leading white space and one sign
// are taken, what follows the digits is ignored, no digits give 0. A number outside 32 bits gives
// the nearest bound.
std::int32_t LeadingInteger(std::string_view text);

}  // namespace tavro
