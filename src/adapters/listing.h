#pragma once

#include "adapters/inventory.h"

namespace tavro {

// `-showadapter`: lists the host's name, its adapters, and each port's functions with the
// identifiers that the other commands take. Failures are reported where they happen; the listing
// goes on with the next port.
void ListAdapters(EntryCache& cache);

}  // namespace tavro
