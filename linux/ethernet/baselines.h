#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "linux/state/state.h"

// Where the counters of ports stood when they were reset. A baseline belongs to the interface of
// its number, whatever that is called by now: the state has it under the name of then.
namespace tavrolinux {

// Null where the interface has none.
const Baseline* FindBaseline(const State& state, std::int32_t interfaceIndex);

void DropBaseline(State& state, std::int32_t interfaceIndex);

// The present name of an interface; nothing where it is gone.
using NameOfInterface = std::function<std::optional<std::string>(std::int32_t interfaceIndex)>;

// Keeps the baseline of an interface in place of the one it has. Where another interface had its
// name, that one's baseline moves under the name that it has now, or goes with it.
void KeepBaseline(State& state, const std::string& name, Baseline baseline,
                  const NameOfInterface& nameOf);

}  // namespace tavrolinux
