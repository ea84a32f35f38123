#pragma once

#include "library/json/findings.h"
#include "simulator/host/host.h"

// What the library loads although no host can be so; `place` is where the thing stands. The host
// may have been read from a file with errors: what could not be read contradicts nothing.
namespace tavrohost {

using tavrolib::Findings;
using tavrolib::Place;

// Adapters, ports and functions: numbers, what partitions and personalities say of them, changes
// that wait for a restart that does not apply them.
void CheckAdapters(const tavrosim::Host& host, const Place& place, Findings& findings);

// Addresses of all kinds that are none, or that several things have.
void CheckAddresses(const tavrosim::Host& host, const Place& place, Findings& findings);

// What the iSCSI functions know of targets and do with them, and the targets on the network.
void CheckIscsiStorage(const tavrosim::Host& host, const Place& place, Findings& findings);

// FCoE functions, and the fabric that they are attached to.
void CheckFcoe(const tavrosim::Host& host, const Place& place, Findings& findings);

}  // namespace tavrohost
