#include "console/wipe.h"

#include "platform/wipe.h"

namespace tavro::console {

void WipeSecret(std::string& text) noexcept {
    // Never more than the capacity, so nothing moves.
    text.resize(text.capacity());
    platform::WipeBytes(text.data(), text.size());
    text.clear();
}

}  // namespace tavro::console
