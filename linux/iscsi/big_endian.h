#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tavrolinux {

using WireBytes = std::span<const std::uint8_t>;

// The number of `size` bytes at `position`, the highest byte first. The bytes have to be there.
inline std::uint64_t BigEndianAt(WireBytes bytes, std::size_t position, std::size_t size) {
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(position, size)) {
        number = number << 8U | byte;
    }
    return number;
}

}  // namespace tavrolinux
