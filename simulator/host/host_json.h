#pragma once

#include "library/json/json.h"
#include "library/json/place.h"
#include "simulator/host/host_type.h"

// Values of the host file as JSON, structs as objects with their keys, both ways.
namespace tavrosim {

tavrolib::Json HostValueToJson(const HostType& type, const void* value);

// Throws ShapeError naming the place for a missing, an unknown or a wrongly shaped member; `value`
// is then partly filled.
void HostValueFromJson(const HostType& type, const tavrolib::Json& json, void* value,
                       const tavrolib::Place& place);

}  // namespace tavrosim
