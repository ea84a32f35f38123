#pragma once

namespace tavrolib {

// Whether secret fields are shown, stand as "***", or are left out: an empty text stands there.
enum class Secrets { Hidden, Shown, LeftOut };

}  // namespace tavrolib
