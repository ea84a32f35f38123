#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavro {

// The number of ports, of an adapter with `portCount`, whose flow control a partition record has
// room for: at most 4, and 0 when the count is negative.
std::size_t PortsWithFlowControl(std::int32_t portCount);

// The number of ports that are shown and asked about: `portCount`, 0 when that is negative. The
// count comes from the library and may be any number; more than 64 are not believed.
std::size_t ShownPorts(std::int32_t portCount);

// The numbers of the functions that belong to a port (counted from 0) of an adapter with
// `portCount` ports, at least 1: the functions 0 to 7 are dealt to the ports in turn.
std::vector<std::size_t> FunctionsOfPort(std::size_t port, std::int32_t portCount);

// Prints the heading line of a port, counted from 0.
void PrintPortHeading(std::size_t port);

}  // namespace tavro
