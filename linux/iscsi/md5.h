#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tavrolinux {

inline constexpr std::size_t Md5Size = 16;
using Md5Digest = std::array<std::uint8_t, Md5Size>;

// The MD5 of the bytes, with which CHAP answers a challenge. No copy of them stays behind.
Md5Digest Md5(std::span<const std::uint8_t> bytes);

}  // namespace tavrolinux
