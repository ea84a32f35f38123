#pragma once

#include <string_view>

namespace tavrolinux {

// The text without the blanks, tabs and line ends around it.
constexpr std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view Blanks = " \t\r\n";
    const auto first = text.find_first_not_of(Blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

}  // namespace tavrolinux
