// Texts from elsewhere on a terminal: what they hold of control characters must not act there.
#pragma once

#include <string>
#include <string_view>

namespace tavro::platform {

// The text with a '?' in the place of each control character other than the tab and "\n": the
// numbers 0 to 1F, 7F, and 80 to 9F.
std::wstring MaskControlCharacters(std::wstring_view text);

// The same for UTF-8. A byte 80 to 9F outside of a well-formed character counts as a control
// character, since some terminals act on it; other malformed bytes stay.
std::string MaskControlCharacters(std::string_view bytes);

}  // namespace tavro::platform
