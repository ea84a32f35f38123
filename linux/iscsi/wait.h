#pragma once

#include <algorithm>
#include <chrono>

namespace tavrolinux {

using WaitClock = std::chrono::steady_clock;

// What is left until then, for poll(); 0 when it has passed.
inline int MillisecondsUntil(WaitClock::time_point deadline) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - WaitClock::now()).count();
    return static_cast<int>(std::max<decltype(left)>(left, 0));
}

}  // namespace tavrolinux
