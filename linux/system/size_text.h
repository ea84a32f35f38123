#pragma once

#include <cstdint>
#include <string>

namespace tavrolinux {

// The size of that many blocks as listings write it: at most two decimals of the largest unit that
// it has one of, rounded down, "16 MB", "1.5 TB". Units are powers of 1024. Empty for more bytes
// than a number holds.
std::string SizeText(std::uint64_t blocks, std::uint32_t blockSize);

}  // namespace tavrolinux
