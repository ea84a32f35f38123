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
// stays, as do names of adapters and ports (but for the identifiers in them), drivers, versions,
// counters, secrets, FCIDs and the MACs that a fabric makes of them, and addresses that are
// nobody's: masks, loopback, all zeros.
//
// In texts of unknown meaning a value is found where it stands as a word: a name that the library
// tells elsewhere, in whatever letter case (see StandInBook::NameAt); an identifier without
// separators only when it is told elsewhere, too.
//
// `answers` must have the shape that CaptureAnswers gives. Throws TroubleError when there are more
// addresses than stand-ins for them (131070, those of IPv6 included, when one of IPv4 is met).
tavrolib::Json WithStandIns(const tavrolib::Json& answers);

}  // namespace tavrohost
