#include "twin/diff/rearrangement.h"

#include <algorithm>
#include <limits>

namespace tavrohost {
namespace {

using Kind = RearrangementStep::Kind;
constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

// Which elements of `origin` can stay where they are: a longest run of them with rising places.
std::vector<bool> Staying(const ListOrigin& origin) {
    std::vector<std::size_t> lastOfRun;  // by the run's length less one: where its last one stands
    std::vector<std::size_t> former(origin.size(), None);
    for (std::size_t index = 0; index < origin.size(); ++index) {
        if (!origin[index]) {
            continue;
        }
        const auto place = std::ranges::lower_bound(
            lastOfRun, *origin[index], {}, [&](std::size_t last) { return *origin[last]; });
        if (place != lastOfRun.begin()) {
            former[index] = *(place - 1);
        }
        if (place == lastOfRun.end()) {
            lastOfRun.push_back(index);
        } else {
            *place = index;
        }
    }
    std::vector<bool> staying(origin.size());
    for (std::size_t index = lastOfRun.empty() ? None : lastOfRun.back(); index != None;
         index = former[index]) {
        staying[index] = true;
    }
    return staying;
}

}  // namespace

std::vector<RearrangementStep> Rearrange(std::size_t size, const ListOrigin& origin) {
    std::vector<RearrangementStep> steps;
    std::vector<std::size_t> current(size, None);  // the wanted places of the elements that stand
    for (std::size_t index = 0; index < origin.size(); ++index) {
        if (origin[index]) {
            current[*origin[index]] = index;
        }
    }
    for (std::size_t at = size; at > 0; --at) {
        if (current[at - 1] == None) {
            steps.push_back({.kind = Kind::Remove, .element = at - 1, .at = at - 1});
        }
    }
    std::erase(current, None);

    const auto place = [&current](std::size_t at) {
        return current.begin() + static_cast<std::ptrdiff_t>(at);
    };
    const std::vector<bool> staying = Staying(origin);
    std::size_t next = 0;  // behind the element that comes before the one looked at
    for (std::size_t index = 0; index < origin.size(); ++index) {
        if (staying[index]) {
            next = static_cast<std::size_t>(std::find(place(next), current.end(), index) -
                                            current.begin()) +
                   1;
            continue;
        }
        if (!origin[index]) {
            steps.push_back({.kind = Kind::Add, .element = index, .at = next});
            current.insert(place(next++), index);
            continue;
        }
        const auto found = std::ranges::find(current, index);
        const auto from = static_cast<std::size_t>(found - current.begin());
        current.erase(found);
        next -= from < next ? 1 : 0;
        if (from != next) {
            steps.push_back(
                {.kind = Kind::Move, .element = *origin[index], .at = next, .from = from});
        }
        current.insert(place(next++), index);
    }
    return steps;
}

}  // namespace tavrohost
