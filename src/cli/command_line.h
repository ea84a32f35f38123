#pragma once

#include <span>
#include <string>

#include "cli/arguments.h"
#include "cli/command.h"

namespace tavro {

// The port identifiers of the command line: the MAC text of the `-iscsi <MAC>`, `-npar`, `-res` and
// `-ethernet` families, the WWN text of `-fcoe`. Stored by the parser, empty before.
extern std::string CurrentMacText;
extern std::string CurrentWwnText;

// Turns the arguments into the code of one of the commands, looking only at the keywords of their
// forms and at how many arguments there are; operands are left to the handlers. A trailing "-debug"
// counts as an argument. Prints nothing and never fails: problems become `NotRecognised` or
// `TooFewArguments`.
CommandCode ParseCommandLine(Arguments arguments, std::span<const Command* const> commands);

// The identifier of the port that a command is addressed to, as the parser stored it; empty for a
// command about the whole host.
std::string PortIdentifierOf(const Command& command);

}  // namespace tavro
