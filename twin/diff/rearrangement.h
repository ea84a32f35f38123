#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace tavrohost {

// One step by which a list becomes another: an element is removed from the place `at`, one is moved
// from `from` to `at` (counted without it), or a new one is put to `at`.
struct RearrangementStep {
    enum class Kind { Remove, Move, Add };
    Kind kind = Kind::Remove;
    std::size_t element = 0;  // its place in the list as it was, of a new one in the list to be
    std::size_t at = 0;
    std::size_t from = 0;

    bool operator==(const RearrangementStep&) const = default;
};

// For each element of a list as it shall be: its place in the list as it is, nothing for a new one.
using ListOrigin = std::vector<std::optional<std::size_t>>;

// The steps, to be taken one after another, by which a list of `size` elements gets the order and
// the elements that `origin` tells, which names no place twice. As few elements as possible move.
std::vector<RearrangementStep> Rearrange(std::size_t size, const ListOrigin& origin);

}  // namespace tavrohost
