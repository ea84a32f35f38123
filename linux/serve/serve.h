#pragma once

#include "library/calls/call.h"
#include "linux/serve/operation.h"
#include "linux/system/failure.h"

namespace tavrolinux {

// The refusal of what the system did not do: it names the right where one is missing.
Outcome RefusalOf(const SystemFailure& failure);

// Serves a call on this machine: DoOperation or a query, with its records, none of which is
// missing. What the system does not do, or may not be asked for, is a refusal that says so.
Outcome ServeCall(const Site& site, const tavrolib::Call& call);

}  // namespace tavrolinux
