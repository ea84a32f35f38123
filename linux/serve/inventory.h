#pragma once

#include "library/calls/call.h"
#include "linux/serve/operation.h"

namespace tavrolinux {

// Answers a query for the host's name, its adapters and functions, and what they are.
Outcome AnswerQuery(const Site& site, const tavrolib::Call& call);

}  // namespace tavrolinux
