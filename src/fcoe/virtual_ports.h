#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// The commands of virtual ports print nothing at all when the library fails them.

// `-fcoe <portWWN> -getvirtualportinfo`: lists the virtual ports of a physical port.
void ListVirtualPorts(const std::string& wwn);

// `-fcoe <portWWN> -createvirtualport <WWN> ...`: creates virtual ports, all with one request.
void CreateVirtualPorts(const std::string& wwn, Arguments arguments);

// `-fcoe <portWWN> -deletevirtualport <WWN> ...`: deletes virtual ports, all with one request.
void DeleteVirtualPorts(const std::string& wwn, Arguments arguments);

// `-fcoe <portWWN> -getvirtualporttarget <WWN>`: lists the targets that a virtual port sees.
void ListVirtualPortTargets(const std::string& wwn, Arguments arguments);

// `-fcoe <portWWN> -getvirtualporttargetlun <WWN>`: lists the LUNs that a virtual port sees.
void ListVirtualPortLuns(const std::string& wwn, Arguments arguments);

}  // namespace tavro
