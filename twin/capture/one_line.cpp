#include "twin/capture/one_line.h"

#include <algorithm>

#include "library/text/text.h"

namespace tavrohost {

std::string InOneLine(const std::string& bytes) {
    constexpr char Delete = 0x7F;
    std::string text = tavrolib::Utf8FromBytes(bytes);
    std::ranges::replace_if(
        text,
        [](char character) { return (character >= 0 && character < ' ') || character == Delete; },
        '?');
    return text;
}

}  // namespace tavrohost
