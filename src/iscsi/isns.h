#pragma once

#include "cli/arguments.h"

namespace tavro {

// `-iscsi -isns -listall`: lists the host's iSNS servers.
void ListIsnsServers();

// `-iscsi -isns -add <IPv4 address>`: adds an iSNS server.
void AddIsnsServer(Arguments arguments);

// `-iscsi -isns -remove <IPv4 address>`: removes an iSNS server.
void RemoveIsnsServer(Arguments arguments);

}  // namespace tavro
