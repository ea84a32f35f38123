#pragma once

#include "library/json/json.h"
#include "simulator/host/host.h"

namespace tavrohost {

// A host file may leave members out, and name some as earlier versions did; a patch of a Difference
// is for a file with all its members. This gives a JSON Patch with which `document`, the file of
// the host `before` as it stands, becomes what `patch` makes of that host: it first puts there what
// the steps of `patch` need. What the file has beside the host's own members stays as it is.
tavrolib::Json FittedPatch(const tavrolib::Json& document, const tavrosim::Host& before,
                           const tavrolib::Json& patch);

}  // namespace tavrohost
