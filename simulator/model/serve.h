#pragma once

#include "library/calls/call.h"
#include "library/calls/outcome.h"
#include "simulator/host/host.h"

// Serving a call on a host in memory: DoOperation or a query, with its records, none of which is
// missing (see tavrolib::CheckArguments).
namespace tavrosim {

// Whether the call is for an operation that changes the host. Reading counters does, since they go
// on from one reading to the next; those of a captured host stand still.
bool ChangesHost(const Host& host, const tavrolib::Call& call);

// Serves a call that does not change the host. A captured host tells what was captured, but for
// what was changed since. A call for an unknown operation is refused.
tavrolib::Outcome ServeReading(const Host& host, const tavrolib::Call& call);

// Serves any call. When it is refused, the host may be partly changed and is to be dropped.
tavrolib::Outcome ServeCall(Host& host, const tavrolib::Call& call);

}  // namespace tavrosim
