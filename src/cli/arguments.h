#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace tavro {

// The program's arguments as the process received them, the program name at position 0.
using Arguments = std::span<const char* const>;

// The argument at a position; empty when there are not that many.
inline std::string ArgumentAt(Arguments arguments, std::size_t position) {
    return position < arguments.size() ? arguments[position] : "";
}

}  // namespace tavro
