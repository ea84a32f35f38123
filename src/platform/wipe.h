// Removing secrets from memory.
#pragma once

#include <cstddef>

namespace tavro::platform {

// Overwrites the bytes with zeros in a way that the compiler does not remove.
void WipeBytes(void* bytes, std::size_t size) noexcept;

}  // namespace tavro::platform
