#include "library/platform/unguessable.h"

#include <iomanip>
#include <random>
#include <sstream>

namespace tavrolib::platform {

std::string UnguessableDigits() {
    constexpr int Words = 4;
    constexpr int DigitsOfWord = 8;
    std::random_device random;
    std::ostringstream digits;
    digits << std::hex << std::setfill('0');
    for (int word = 0; word < Words; ++word) {
        digits << std::setw(DigitsOfWord) << random();
    }
    return digits.str();
}

std::filesystem::path NewNameBeside(const std::filesystem::path& path) {
    std::filesystem::path name = path;
    name += '.' + UnguessableDigits() + ".new";
    return name;
}

}  // namespace tavrolib::platform
