#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Hexadecimal digits of identifiers, as the library writes them: in capitals.
namespace tavrosim {

// The last `digits` hexadecimal digits of `number`.
std::string HexOf(std::uint64_t number, std::size_t digits);

// The text with its letters a to z in capitals.
std::string Capitals(std::string_view text);

}  // namespace tavrosim
