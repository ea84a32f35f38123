// The commands for target portals, the addresses at which a port's initiator discovers targets:
// `-iscsi <MAC> -portal -listall`, `-add` and `-remove`.
#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// Lists the portals that the port's initiator knows. A failure is told without its reason.
void ListPortals(const std::string& mac);

// Adds a portal. Operands: address, port number (the default one when missing or refused), login
// options.
void AddPortal(const std::string& mac, Arguments arguments);

// Removes a portal, unless a target is reached through its address. Operands: address, port number
// (sent even when it is refused).
void RemovePortal(const std::string& mac, Arguments arguments);

}  // namespace tavro
