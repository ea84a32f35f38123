#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// `-fcoe <portWWN> -target -listactive`: lists the targets that an FCoE port sees.
void ListFcoeTargets(const std::string& wwn);

// `-fcoe <portWWN> -target -getinfo <target name>`: shows one target.
void ShowFcoeTarget(const std::string& wwn, Arguments arguments);

// `-fcoe <portWWN> -target -pbindinfo`: lists the persistent bindings of an FCoE port; that there
// are none is reported like a failure.
void ListFcoeBindings(const std::string& wwn);

// `-fcoe <portWWN> -target -lunlist <target name>`: lists the LUNs of one target.
void ListFcoeLuns(const std::string& wwn, Arguments arguments);

}  // namespace tavro
