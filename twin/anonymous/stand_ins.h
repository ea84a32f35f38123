#pragma once

#include "library/json/json.h"

namespace tavrohost {

// Captured answers (see CaptureAnswers) with stand-ins for what identifies a host and its networks:
// names of hosts, interfaces, devices, targets and CHAP, serial numbers, IP addresses, MACs and
// WWNs, wherever they stand, in texts of unknown meaning and errors too.
//
// The same value has the same stand-in everywhere, different values have different ones, and the
// order in which values appear decides which. A stand-in is of the same kind: an address of a range
// for documentation and benchmarks, a locally administered MAC, a WWN that keeps its first four
// digits and ends in the stand-in of the MAC that it ended in. What people chose among given words
// stays, as do names of adapters and ports, drivers, versions, counters, secrets, FCIDs and the
// MACs that a fabric makes of them, and addresses that are nobody's: masks, loopback, all zeros.
//
// `answers` must have the shape that CaptureAnswers gives.
tavrolib::Json WithStandIns(const tavrolib::Json& answers);

}  // namespace tavrohost
