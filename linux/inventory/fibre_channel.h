#pragma once

#include "linux/inventory/machine.h"
#include "linux/system/roots.h"

namespace tavrolinux {

// Gives the interface the Fibre Channel host that the kernel has on it, on a VLAN of it or on its
// device, and that host's names, where there is one. Of several it is the one of the lowest number.
void TakeFibreChannelHost(const Roots& roots, Interface& interface);

}  // namespace tavrolinux
