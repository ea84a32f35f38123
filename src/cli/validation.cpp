#include "cli/validation.h"

#include <algorithm>
#include <limits>
#include <regex>
#include <stdexcept>
#include <vector>

#include "mgmt/text.h"

namespace tavro {

namespace {

constexpr std::string_view IPv6Pattern =
    "(([0-9a-fA-F]{1,4}:){7,7}[0-9a-fA-F]{1,4}"
    "|([0-9a-fA-F]{1,4}:){1,7}:"
    "|([0-9a-fA-F]{1,4}:){1,6}:[0-9a-fA-F]{1,4}"
    "|([0-9a-fA-F]{1,4}:){1,5}(:[0-9a-fA-F]{1,4}){1,2}"
    "|([0-9a-fA-F]{1,4}:){1,4}(:[0-9a-fA-F]{1,4}){1,3}"
    "|([0-9a-fA-F]{1,4}:){1,3}(:[0-9a-fA-F]{1,4}){1,4}"
    "|([0-9a-fA-F]{1,4}:){1,2}(:[0-9a-fA-F]{1,4}){1,5}"
    "|[0-9a-fA-F]{1,4}:((:[0-9a-fA-F]{1,4}){1,6})"
    "|:((:[0-9a-fA-F]{1,4}){1,7}|:)"
    "|fe80:(:[0-9a-fA-F]{1,4}){0,4}%[0-9a-zA-Z]{1,}"
    "|::(ffff(:0{1,4}){0,1}:){0,1}"
    "((25[0-5]|(2[0-4]|1{0,1}[0-9]){0,1}[0-9]).){3,3}(25[0-5]|(2[0-4]|1{0,1}[0-9]){0,1}[0-9])"
    "|([0-9a-fA-F]{1,4}:){1,4}:"
    "((25[0-5]|(2[0-4]|1{0,1}[0-9]){0,1}[0-9]).){3,3}"
    "(25[0-5]|(2[0-4]|1{0,1}[0-9]){0,1}[0-9]))";
static_assert(IPv6Pattern.size() == 657);

// No address but a link-local one with its zone is longer than eight groups of four digits and the
// colons between them; the pattern's engine recurses once for every character, so longer texts must
// never reach it.
constexpr std::size_t LongestWithoutZone = 39;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsDigitOrLetter(char character) {
    return IsDigit(character) || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z');
}

// The non-empty pieces of a text between separators.
std::vector<std::string_view> NonEmptyPieces(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(separator), text.size());
        if (length > 0) {
            pieces.push_back(text.substr(0, length));
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return pieces;
}

bool IsNumberUpTo(std::string_view piece, std::int32_t maximum) {
    return !HasNonDigit(piece) && LeadingInteger(piece) <= maximum;
}

struct ParsedNumber {
    bool negative = false;
    std::uint64_t magnitude = 0;
};

// Reads a number as the standard conversions do; a magnitude above `limit` stays above it.
ParsedNumber ParseNumber(std::string_view text, std::uint64_t limit, const char* invalid) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    ParsedNumber number;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        number.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() || !IsDigit(text.front())) {
        throw std::invalid_argument(invalid);
    }
    for (const char digit : text) {
        if (!IsDigit(digit)) {
            break;
        }
        number.magnitude =
            std::min(number.magnitude * 10 + static_cast<std::uint64_t>(digit - '0'), limit + 1);
    }
    return number;
}

}  // namespace

std::string NumberToText(std::uint32_t number) {
    return std::to_string(number);
}

std::uint32_t ParseUnsigned(std::string_view text) {
    constexpr std::uint64_t Limit = std::numeric_limits<std::uint32_t>::max();
    const ParsedNumber number = ParseNumber(text, Limit, "invalid stoul argument");
    if (number.magnitude > Limit) {
        throw std::out_of_range("stoul argument out of range");
    }
    const auto value = static_cast<std::uint32_t>(number.magnitude);
    return number.negative ? 0U - value : value;
}

std::int32_t ParseSigned(std::string_view text) {
    constexpr std::int64_t Lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t Highest = std::numeric_limits<std::int32_t>::max();
    const ParsedNumber number =
        ParseNumber(text, static_cast<std::uint64_t>(-Lowest), "invalid stol argument");
    const auto magnitude = static_cast<std::int64_t>(number.magnitude);
    const std::int64_t value = number.negative ? -magnitude : magnitude;
    if (value < Lowest || value > Highest) {
        throw std::out_of_range("stol argument out of range");
    }
    return static_cast<std::int32_t>(value);
}

std::string TrimBlanks(std::string& text) {
    text = std::string(WithoutOuterBlanks(text));
    return text;
}

bool IsValidIPv4(std::string_view text) {
    const auto pieces = NonEmptyPieces(text, '.');
    return pieces.size() == 4 && std::ranges::all_of(pieces, [](std::string_view piece) {
               return IsNumberUpTo(piece, 255);
           });
}

bool IsValidIPv6(std::string_view text) {
    static const std::regex pattern(IPv6Pattern.begin(), IPv6Pattern.end());
    std::string candidate(text);
    if (candidate.size() > LongestWithoutZone) {
        const std::size_t zone = candidate.find('%') + 1;
        if (zone == 0 || zone == candidate.size() ||
            !std::all_of(candidate.begin() + static_cast<std::ptrdiff_t>(zone), candidate.end(),
                         IsDigitOrLetter)) {
            return false;
        }
        // Nothing but a zone may end in a letter beyond the hexadecimal digits.
        candidate.replace(zone, std::string::npos, "z");
    }
    return candidate.size() <= LongestWithoutZone && std::regex_match(candidate, pattern);
}

bool IsValidAddress(std::string_view text) {
    return IsValidIPv4(text) || IsValidIPv6(text);
}

bool IsNumberList(std::string_view text) {
    const auto pieces = NonEmptyPieces(text, ',');
    return !pieces.empty() && std::ranges::all_of(pieces, [](std::string_view piece) {
        return IsNumberUpTo(piece, 99999);
    });
}

bool HasNonDigit(std::string_view text) {
    return !std::ranges::all_of(text, IsDigit);
}

int CheckNumberRange(std::string_view text, std::int32_t maximum) {
    if (HasNonDigit(text)) {
        return 1;
    }
    const std::int32_t value = ParseSigned(text);
    return value >= 0 && value <= maximum ? 0 : 1;
}

bool IsNumberInRange(std::string_view text, std::int32_t maximum) {
    try {
        return CheckNumberRange(text, maximum) == 0;
    } catch (const std::logic_error&) {
        return false;
    }
}

}  // namespace tavro
