#pragma once

#include <string>

#include "adapters/inventory.h"

// `-iscsi <MAC> -getbootconfig` and `-setbootconfig`: how a port boots from iSCSI targets.
namespace tavro {

// Shows the boot configuration of a port.
void ShowIscsiBoot(const std::string& mac);

// Shows the boot configuration, asks for a new one and writes it. A port whose partition state does
// not allow changes is refused before anything else.
void SetIscsiBoot(const std::string& mac, EntryCache& cache);

}  // namespace tavro
