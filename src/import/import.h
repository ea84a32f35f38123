#pragma once

#include "adapters/inventory.h"

namespace tavro {

// `-import`: applies the saved iSCSI configuration "cnadiscovery.xml" of the current directory to
// the host: the initiator, then the TCP/IP settings, portals and target logins of each port that
// the host has. A file that is missing or malformed changes nothing and is passed over in silence.
// A failed operation is reported and the import goes on; a summary ends it.
void ImportConfiguration(EntryCache& cache);

}  // namespace tavro
