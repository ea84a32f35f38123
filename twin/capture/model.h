#pragma once

#include <string>
#include <vector>

#include "simulator/host/host.h"
#include "twin/capture/told.h"

namespace tavrohost {

// The host that a library's answers tell of, for the simulator to play, and what of them it has no
// place for: sentences in UTF-8.
struct CapturedModel {
    tavrosim::Host host;
    std::vector<std::string> omissions;
};

// Makes a host of what was told, such that the simulator tells the same, and changes do to it what
// they would do to the real one. Texts that mean nothing to the simulator are left out. The host
// fulfils CheckHost whatever was told: a function whose identifier is none, or belongs to another
// one of its kind, is omitted.
CapturedModel ModelFrom(const Told& told);

}  // namespace tavrohost
