#include "mgmt/text.h"

#include <algorithm>
#include <limits>

namespace tavro {

std::wstring ToWide(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    std::transform(text.begin(), text.end(), wide.begin(), [](char byte) {
        return static_cast<wchar_t>(static_cast<unsigned char>(byte));
    });
    return wide;
}

char NarrowUnit(wchar_t unit) {
    return static_cast<char>(static_cast<unsigned char>(unit & 0xFF));
}

std::string ToNarrow(std::wstring_view text) {
    std::string narrow(text.size(), '\0');
    std::transform(text.begin(), text.end(), narrow.begin(), NarrowUnit);
    return narrow;
}

std::string_view WithoutOuterBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::int32_t LeadingInteger(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos) {
        return 0;
    }
    text.remove_prefix(start);
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') {
        text.remove_prefix(1);
    }
    // One above the largest positive value is enough to tell every number that does not fit.
    constexpr std::int64_t Ceiling = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    std::int64_t magnitude = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9') {
            break;
        }
        magnitude = std::min(magnitude * 10 + (digit - '0'), Ceiling);
    }
    return static_cast<std::int32_t>(negative ? -magnitude : std::min(magnitude, Ceiling - 1));
}

}  // namespace tavro
