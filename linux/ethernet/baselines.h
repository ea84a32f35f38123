#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "linux/state/state.h"

// Where the counters of ports stood when they were reset. A baseline belongs to the interface of
// its number, whatever that is called by now: the state has it under the name of then. When that
// interface is gone, another can get the number: it has another address.
namespace tavrolinux {

// Null where there is none for the number.
const Baseline* FindBaseline(const State& state, const InterfaceNumber& number);

void DropBaseline(State& state, const InterfaceNumber& number);

// The present name of the interface that the baseline belongs to; nothing where it is gone.
using NameOfInterface = std::function<std::optional<std::string>(const Baseline& baseline)>;

// Keeps the baseline of an interface in place of the one it has. Where another interface had its
// name, that one's baseline moves under the name that it has now, or goes with it.
void KeepBaseline(State& state, const std::string& name, Baseline baseline,
                  const NameOfInterface& nameOf);

}  // namespace tavrolinux
