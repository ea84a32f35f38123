#pragma once

#include <string>

#include "cli/arguments.h"
#include "cli/command.h"
#include "mgmt/entry_cache.h"

namespace tavro {

// One run of a command: what its handler may draw on. Operands are asked for by the objects that
// the command's row names; asking for one that it does not name throws std::logic_error.
struct Invocation {
    const Command& command;
    // The MAC or WWN that names the port; empty for a command about the whole host.
    std::string port;
    Arguments arguments;
    EntryCache& cache;

    // Whether an argument stands where the operand belongs.
    bool Has(const Operand& operand) const;

    // What is typed for an operand; empty when there is nothing.
    std::string Text(const Operand& operand) const;

    // The arguments from an operand on; none when it is missing.
    Arguments From(const Operand& operand) const;

    // Whether the operand is the last argument.
    bool EndsWith(const Operand& operand) const;
};

}  // namespace tavro
