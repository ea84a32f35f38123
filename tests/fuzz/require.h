#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// Ends a fuzz target where something does not hold that must.
inline void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// The fuzzer's input.
inline std::string_view BytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}
