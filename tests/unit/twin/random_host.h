#pragma once

#include <cstdint>

#include "simulator/host/host.h"

namespace tavrohost_test {

enum class Oddness {
    // Anything that a host file may hold: pending changes, names of any bytes, targets that nobody
    // answers for, sessions through portals that nobody knows.
    Anything,
    // Only what reading operations tell of a host, so that whoever has read everything can foresee
    // what a change does. The exceptions are named where they are made.
    Foreseeable,
};

// A host with functions of all kinds, which fulfils CheckHost. The same seed gives the same host on
// every platform.
tavrosim::Host RandomHost(std::uint32_t seed, Oddness oddness);

}  // namespace tavrohost_test
