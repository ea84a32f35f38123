#pragma once

#include "library/json/json.h"
#include "simulator/host/host_type.h"

namespace tavrohost {

// What a value of the struct type is where the host file says nothing of it; null for a type that
// stands in no host file.
const tavrolib::Json& UsualOf(const tavrosim::HostType& type);

}  // namespace tavrohost
