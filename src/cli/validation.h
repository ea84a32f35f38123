#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavro {

// The checks that handlers apply to operands and answers. None prints anything; the handler chooses
// the message for what is refused. Numbers have 32 bits on every platform.

// The decimal text of a number.
std::string NumberToText(std::uint32_t number);

// The decimal number at the start of a text, read like std::stoul in base 10: leading white space
// and a sign are taken, what follows the digits is ignored, a negative number wraps around. Throws
// std::invalid_argument("invalid stoul argument") when there are no digits, and
// std::out_of_range("stoul argument out of range") for a number of more than 32 bits.
std::uint32_t ParseUnsigned(std::string_view text);

// The same for signed numbers, like std::stol; the errors say "stol".
std::int32_t ParseSigned(std::string_view text);

// Removes the blanks (' ' only) at both ends of `text`, and returns a copy of the result.
std::string TrimBlanks(std::string& text);

// Whether the text is four decimal numbers of at most 255 separated by dots. Empty pieces are
// skipped, so "1..2.3.4." passes.
bool IsValidIPv4(std::string_view text);

// Whether the whole text is an IPv6 address, a link-local one with its zone and an embedded IPv4
// address included. The dots of the latter may be any character.
bool IsValidIPv6(std::string_view text);

// Whether the text is an address of either kind.
bool IsValidAddress(std::string_view text);

// Whether the text is one or more decimal numbers of at most 99999 separated by commas. Empty
// pieces are skipped.
bool IsNumberList(std::string_view text);

// Whether any character is not a decimal digit; false for an empty text.
bool HasNonDigit(std::string_view text);

// 0 when the text is all digits and its value lies between 0 and `maximum`, 1 otherwise. Throws
// like ParseSigned for an empty text and for a number that 32 bits with a sign do not hold.
int CheckNumberRange(std::string_view text, std::int32_t maximum);

// Whether `CheckNumberRange` accepts the text; a text that it throws for is refused.
bool IsNumberInRange(std::string_view text, std::int32_t maximum);

}  // namespace tavro
