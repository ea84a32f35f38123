#include "console/wipe.h"

namespace tavro::console {

void WipeBytes(void* bytes, std::size_t size) noexcept {
    auto* byte = static_cast<volatile unsigned char*>(bytes);
    for (std::size_t index = 0; index < size; ++index) {
        byte[index] = 0;
    }
}

void WipeSecret(std::string& text) noexcept {
    // Never more than the capacity, so nothing moves.
    text.resize(text.capacity());
    WipeBytes(text.data(), text.size());
    text.clear();
}

}  // namespace tavro::console
