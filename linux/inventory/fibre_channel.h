#pragma once

#include "linux/inventory/machine.h"
#include "linux/system/roots.h"

namespace tavrolinux {

// Gives the interface the Fibre Channel host that the kernel has on it, and that host's names,
// where there is one.
void TakeFibreChannelHost(const Roots& roots, Interface& interface);

}  // namespace tavrolinux
