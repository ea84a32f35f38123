#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace tavrosim {

// The number that the whole text writes in decimal; nothing when it is none of the type.
template <std::unsigned_integral Number>
std::optional<Number> WholeNumber(const std::string& text) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// A counter; 0 where the text is no number. Host files hold 63 bits of it.
inline std::uint64_t CounterFrom(const std::string& text) {
    constexpr std::uint64_t Highest = std::numeric_limits<std::int64_t>::max();
    return std::min(WholeNumber<std::uint64_t>(text).value_or(0), Highest);
}

}  // namespace tavrosim
