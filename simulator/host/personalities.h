#pragma once

#include <cstddef>
#include <string>

#include "simulator/host/host.h"

// What functions the ports of an adapter have. A partitioned adapter has eight, numbered from 0;
// with P ports, function f belongs to port (f mod P) + 1 and has the personality that the
// partitions name. A port of an undivided one has its Ethernet function, and on a converged adapter
// one for its own personality.
namespace tavrosim {

// The personality of the function.
const char* PersonalityOf(const Function& function);

// The port's own personality in force, iSCSI where nothing else is said.
std::string PersonalityOf(const Port& port);

// Gives the adapter's port at `index` the functions that the partitions or its personality name. A
// function that keeps its number and personality stays as it is. A new one gets the MAC of the
// port's first function, counted on by the distance of their numbers, and WWNs made of it; where
// another function of the host has that address, the next free one. What is no longer named is
// gone. A port without functions, from which no address could be derived, stays so.
void RebuildFunctions(const Host& host, Adapter& adapter, std::size_t index);

}  // namespace tavrosim
