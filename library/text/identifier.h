#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Identifiers are compared by their hexadecimal digits: case and the separators "-" and ":" do not
// matter.
namespace tavrolib {

// How many hexadecimal digits identifiers have.
inline constexpr std::size_t MacDigits = 12;
inline constexpr std::size_t WwnDigits = 16;
inline constexpr std::size_t FcidDigits = 6;

// The identifier in lower case without separators; empty when it is neither a MAC nor a WWN.
std::string NormalIdentifier(std::string_view text);

// The same of a MAC or WWN, and any other text as it is.
std::string NormalText(const std::string& text);

// Whether the text is a Fibre Channel address: six hexadecimal digits and nothing else.
bool IsFcid(std::string_view text);

}  // namespace tavrolib
