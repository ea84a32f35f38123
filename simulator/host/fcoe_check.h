#pragma once

#include <set>
#include <string>

#include "library/json/findings.h"
#include "library/json/place.h"
#include "simulator/host/fcoe.h"
#include "simulator/host/fcoe_fabric.h"

// What must hold for the FCoE side of a host file; each tells
// `findings` what does not.
namespace tavrosim {

using tavrolib::Findings;
using tavrolib::Place;

// `identifiers` are those of the host's FCoE functions so far, in normal form; the function's own
// are added. Virtual ports share this set: no two ports of a host have one WWN.
void CheckFcoePart(const FcoePart& part, std::set<std::string>& identifiers, const Place& place,
                   Findings& findings);

void CheckFabric(const FcoeFabric& fabric, const Place& place, Findings& findings);

}  // namespace tavrosim
