#include "library/text/identifier.h"

namespace tavrolib {

std::string NormalIdentifier(std::string_view text) {
    std::string digits;
    for (const char character : text) {
        if (character == '-' || character == ':') {
            continue;
        }
        const bool upper = character >= 'A' && character <= 'F';
        const bool hexadecimal = upper || (character >= 'a' && character <= 'f') ||
                                 (character >= '0' && character <= '9');
        if (!hexadecimal) {
            return {};
        }
        digits += upper ? static_cast<char>(character - 'A' + 'a') : character;
    }
    return digits.size() == MacDigits || digits.size() == WwnDigits ? digits : std::string();
}

std::string NormalText(const std::string& text) {
    std::string normal = NormalIdentifier(text);
    return normal.empty() ? text : normal;
}

bool IsFcid(std::string_view text) {
    return text.size() == FcidDigits &&
           text.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos;
}

}  // namespace tavrolib
