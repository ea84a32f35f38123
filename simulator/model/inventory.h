#pragma once

#include "library/calls/call.h"
#include "library/calls/outcome.h"
#include "simulator/host/host.h"

namespace tavrosim {

// Answers a query about what the host has: every entry point that is served but DoOperation. The
// call is complete.
tavrolib::Outcome AnswerQuery(const Host& host, const tavrolib::Call& call);

}  // namespace tavrosim
