#pragma once

#include <cstddef>
#include <string>

#include "simulator/host/host.h"

// What the restart of the host does. Changes that take effect then are pending in the host file.
namespace tavrosim {

// Applies what is pending: partitions, personalities of ports, VLAN IDs of Ethernet functions. The
// functions of the adapters follow (simulator/host/personalities.h). Nothing is pending afterwards;
// all else stays as it is.
void Restart(Host& host);

// Makes the partitions those in force, with the adapter's state. The functions follow where the
// mode or a personality is another one.
void ApplyPartitions(const Host& host, Adapter& adapter, Partitions partitions);

// Makes the personality the own one of the adapter's port at `index`, in force, with the functions
// of the port where the adapter is not partitioned.
void ApplyPersonality(const Host& host, Adapter& adapter, std::size_t index,
                      std::string personality);

}  // namespace tavrosim
