#include "platform/wipe.h"

#include <cstring>

namespace tavro::platform {

void WipeBytes(void* bytes, std::size_t size) noexcept {
    // What a volatile pointer leads to is unknown to the compiler, so the call stays.
    static void* (*const volatile Fill)(void*, int, std::size_t) = std::memset;
    if (size > 0) {
        Fill(bytes, 0, size);
    }
}

}  // namespace tavro::platform
