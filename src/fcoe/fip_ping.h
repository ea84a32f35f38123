#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// `-fcoe <portWWN> -ping <target name> [-pcount <count> | -timeout <seconds>]`: pings a target from
// an FCoE port. An option counts only right after the target name, with at most one word after it.
void PingFromFcoePort(const std::string& wwn, Arguments arguments);

// `-fcoe <portWWN> -getfip`: shows the FIP VLAN ID of an FCoE port. Silent on failure.
void ShowFip(const std::string& wwn);

// `-fcoe <portWWN> -setfip <VLAN ID>`: sets the FIP VLAN ID of an FCoE port. Silent on failure.
void SetFip(const std::string& wwn, Arguments arguments);

}  // namespace tavro
