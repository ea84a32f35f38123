#pragma once

#include <string>

#include "cli/arguments.h"
#include "cli/command_code.h"

namespace tavro {

// The port identifiers of the command line: the MAC text of the `-iscsi <MAC>`, `-npar`, `-res` and
// `-ethernet` families, the WWN text of `-fcoe`. Stored by the parser, empty before.
extern std::string CurrentMacText;
extern std::string CurrentWwnText;

// Turns the arguments into a command code, looking only at the leading keywords and at how many
// arguments there are; operands are left to the handlers. A trailing "-debug" counts as an
// argument. Prints nothing and never fails: problems become `NotRecognised` or `TooFewArguments`.
CommandCode ParseCommandLine(Arguments arguments);

}  // namespace tavro
