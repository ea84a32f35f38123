#include "simulator/host/numerals.h"

#include <algorithm>

namespace tavrosim {

std::string HexOf(std::uint64_t number, std::size_t digits) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string text(digits, '0');
    for (std::size_t i = digits; i > 0; --i) {
        text[i - 1] = Digits[number % 16];
        number /= 16;
    }
    return text;
}

std::string Capitals(std::string_view text) {
    std::string capitals(text);
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return capitals;
}

}  // namespace tavrosim
