#pragma once

#include <cstdint>

namespace tavrohost_test {

// How many of so many random hosts this build goes through: with sanitizers, which make each take
// six times as long, a quarter of them.
constexpr std::uint32_t HostsToTry(std::uint32_t hosts) {
    return TAVRO_SANITIZED ? hosts / 4 : hosts;
}

}  // namespace tavrohost_test
