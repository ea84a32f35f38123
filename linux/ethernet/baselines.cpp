#include "linux/ethernet/baselines.h"

#include <cstddef>
#include <utility>

namespace tavrolinux {
namespace {

// The counters that the state calls so.
constexpr const char* BaselineFamily = "ethernet";

const Baseline* OwnBaseline(const InterfaceState& kept, const InterfaceNumber& number) {
    const auto found = kept.baselines.find(BaselineFamily);
    const bool isOwn = found != kept.baselines.end() && found->second.number == number;
    return isOwn ? &found->second : nullptr;
}

}  // namespace

const Baseline* FindBaseline(const State& state, const InterfaceNumber& number) {
    for (const auto& [name, kept] : state.interfaces) {
        if (const Baseline* const own = OwnBaseline(kept, number)) {
            return own;
        }
    }
    return nullptr;
}

void DropBaseline(State& state, const InterfaceNumber& number) {
    for (auto& [name, kept] : state.interfaces) {
        if (OwnBaseline(kept, number) != nullptr) {
            kept.baselines.erase(BaselineFamily);
        }
    }
}

void KeepBaseline(State& state, const std::string& name, Baseline baseline,
                  const NameOfInterface& nameOf) {
    DropBaseline(state, baseline.number);
    std::optional<std::string> place = name;
    // Interfaces that have swapped their names each move the next; none moves twice.
    for (std::size_t moves = state.interfaces.size() + 1; place && moves > 0; --moves) {
        auto& kept = state.interfaces[*place].baselines;
        const auto displaced = kept.extract(BaselineFamily);
        kept[BaselineFamily] = std::move(baseline);
        if (!displaced) {
            return;
        }
        baseline = displaced.mapped();
        place = nameOf(baseline);
    }
}

}  // namespace tavrolinux
