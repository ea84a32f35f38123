#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tavrohost_test {

// Chance that comes out the same on every platform.
class Dice {
  public:
    explicit Dice(std::uint32_t seed) : generator_(seed) {}

    // 0 up to `count` - 1.
    std::uint32_t Below(std::uint32_t count) {
        return static_cast<std::uint32_t>(generator_() % count);
    }

    // From the lowest to the highest number.
    std::uint32_t From(std::uint32_t lowest, std::uint32_t highest) {
        return lowest + Below(highest - lowest + 1);
    }

    bool Chance(std::uint32_t percent) { return Below(100) < percent; }

    template <std::size_t Count>
    std::string OneOf(const std::string_view (&texts)[Count]) {
        return std::string(texts[Below(static_cast<std::uint32_t>(Count))]);
    }

    template <class Elements>
    auto& Any(Elements& elements) {
        return elements[Below(static_cast<std::uint32_t>(elements.size()))];
    }

  private:
    std::mt19937 generator_;
};

}  // namespace tavrohost_test
