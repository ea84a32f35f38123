#pragma once

#include "simulator/host/host.h"
#include "twin/run/program_job.h"

namespace tavrohost {

// The host that the library of the job manages, without secrets, captured within the job's time
// limit. What a twin has no place for, and what ports are not told, is told on standard error.
// Throws TroubleError when the host does not list its adapters or tells none of their ports, and
// what CaptureHost throws.
tavrosim::Host CaptureFor(const ProgramJob& job);

}  // namespace tavrohost
