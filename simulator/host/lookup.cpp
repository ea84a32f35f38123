#include "simulator/host/lookup.h"

namespace tavrosim {

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

const std::string& KeyOf(const Function& function) {
    return function.fcoe ? function.fcoe->portWwn : function.mac;
}

}  // namespace tavrosim
