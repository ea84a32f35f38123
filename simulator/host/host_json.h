#pragma once

#include <string_view>

#include "library/json/findings.h"
#include "library/json/json.h"
#include "library/json/place.h"
#include "simulator/host/host_type.h"

// Values of the host file as JSON, structs as objects with their keys, both ways.
namespace tavrosim {

tavrolib::Json HostValueToJson(const HostType& type, const void* value);

// Throws ShapeError naming the place for a missing, an unknown or a wrongly shaped member; `value`
// is then partly filled. A struct may have a member `foreign`, which is left to the caller.
void HostValueFromJson(const HostType& type, const tavrolib::Json& json, void* value,
                       const tavrolib::Place& place, std::string_view foreign = {});

// The same, which tells `findings` what it would throw. Where they are collected, all that can be
// read is read, and the rest of `value` stays as it was made.
void HostValueFromJson(const HostType& type, const tavrolib::Json& json, void* value,
                       const tavrolib::Place& place, std::string_view foreign,
                       tavrolib::Findings& findings);

}  // namespace tavrosim
