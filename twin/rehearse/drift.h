#pragma once

#include <string>
#include <vector>

#include "simulator/host/host.h"
#include "twin/diff/difference.h"

namespace tavrohost {

// What a command works on: the changes that it made, and the functions that its operations named.
struct WorkedOn {
    std::vector<Change> changes;
    std::vector<std::string> functions;  // as requests name them; others count for nothing
};

// Of the differences between two states of a host those that lie where a command works: in a
// function that it changes or names, in an adapter or port that holds such a function or that it
// changes itself, or in the same thing of the host as a whole (its initiator, its iSNS servers).
// Left out is what says nothing of that: what changes by itself, such as a temperature, and what
// waits for the restart, which no library tells. `host` is where the functions are found.
std::vector<Change> ChangesWithin(const WorkedOn& worked, const tavrosim::Host& host,
                                  std::vector<Change> changes);

}  // namespace tavrohost
