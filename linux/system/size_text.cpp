#include "linux/system/size_text.h"

#include <array>
#include <cstddef>
#include <limits>

namespace tavrolinux {

std::string SizeText(std::uint64_t blocks, std::uint32_t blockSize) {
    constexpr std::array Units{"B", "KB", "MB", "GB", "TB", "PB", "EB"};
    constexpr std::uint64_t Step = 1024;
    constexpr std::uint64_t Hundred = 100;
    if (blockSize != 0 && blocks > std::numeric_limits<std::uint64_t>::max() / blockSize) {
        return {};
    }
    std::uint64_t whole = blocks * blockSize;
    std::uint64_t below = 0;  // what the last step left over
    std::size_t unit = 0;
    while (whole >= Step) {
        below = whole % Step;
        whole /= Step;
        ++unit;
    }
    std::string text = std::to_string(whole);
    if (const std::uint64_t hundredths = below * Hundred / Step; hundredths != 0) {
        const std::string digits = std::to_string(hundredths);
        text += digits.size() < 2 ? ".0" + digits : '.' + digits;
        if (text.back() == '0') {
            text.pop_back();
        }
    }
    return text + ' ' + Units.at(unit);
}

}  // namespace tavrolinux
