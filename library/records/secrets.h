#pragma once

namespace tavrolib {

// Whether secret fields are shown or stand as "***".
enum class Secrets { Hidden, Shown };

}  // namespace tavrolib
