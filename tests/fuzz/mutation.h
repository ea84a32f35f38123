#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

// The mutation of bytes that libFuzzer offers to mutators: it uses the dictionary and what was
// compared with what. Returns the new size.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t mostSize);

namespace tavro_fuzz {

// 0 up to `count` - 1.
inline std::size_t Below(std::size_t count, std::mt19937& random) {
    return random() % count;
}

// The text after a mutation of its bytes, at most `room` longer.
inline std::string MutatedBytes(std::string text, std::size_t room = 16) {
    const std::size_t size = text.size();
    text.resize(size + room);
    text.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(text.data()), size, text.size()));
    return text;
}

// Puts a mutated text into the fuzzer's buffer. Returns its size there.
inline std::size_t PutInto(std::uint8_t* data, std::size_t mostSize, std::string_view text) {
    return text.copy(reinterpret_cast<char*>(data), mostSize);
}

}  // namespace tavro_fuzz
