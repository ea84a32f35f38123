// The operands by which portals are named on the command line.
#pragma once

#include <string>

#include "cli/invocation.h"

namespace tavro {

// The TCP port of a portal for which none is given.
inline constexpr const char* DefaultIscsiPort = "3260";

// Whether the operand is an address; says so when it is not.
bool AcceptPortalAddress(const std::string& address);

// Whether the operand is a port number; says so when it is not.
bool AcceptPortNumber(const std::string& port);

// The port number that is typed. A missing one, and one that is refused, gives the default port.
std::string PortNumberOrDefault(const Invocation& invocation);

}  // namespace tavro
