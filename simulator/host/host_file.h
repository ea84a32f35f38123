#pragma once

#include <string>
#include <string_view>

#include "simulator/host/host.h"

namespace tavrosim {

// The host that a host file's text describes. Throws ShapeError that names the place: a syntax
// error, a format newer than HostFormat, a missing or unknown member, a value of the wrong kind, or
// a host that contradicts itself (see `CheckHost`).
Host HostFromText(std::string_view text);

// The text of a host file.
std::string TextFromHost(const Host& host);

// The host that stands in where there is no host file.
Host DefaultHost();

// Throws ShapeError where the host contradicts itself: two adapters of one name; a function of no
// or several kinds; a MAC, WWN or FCID that is none; an identifier that addresses two functions;
// an FCoE side that cannot be (see fcoe_check.h).
void CheckHost(const Host& host);

}  // namespace tavrosim
