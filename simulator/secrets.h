#pragma once

namespace tavrosim {

/// Whether secret fields are shown or stand as "***".
enum class Secrets { Hidden, Shown };

}  // namespace tavrosim
