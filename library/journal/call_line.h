#pragma once

#include <cstdint>

#include "library/calls/call.h"
#include "library/json/json.h"
#include "library/records/secrets.h"

// A call as one JSON object: a line of a trace, and an answer when it has its outputs.
namespace tavrolib {

// What identifies the call, and its input as it stands. To be made before the call is served, which
// may change its records.
Json CallToJson(const Call& call, Secrets secrets);

// Adds what the call filled in and, unless that is null, the error that it set.
void AddOutputs(Json& line, const Call& call, const tavroapi::ErrorRecord* error, Secrets secrets);

}  // namespace tavrolib
