#pragma once

#include <cstdint>
#include <span>

#include "adapters/inventory.h"
#include "cli/arguments.h"
#include "cli/command_code.h"

namespace tavro {

// What a handler may draw on.
struct Invocation {
    Arguments arguments;
    EntryCache& cache;
};

// What becomes of a command while the adapter state is restricted.
enum class AccessClass {
    Runs,     // runs without a word
    Warns,    // runs after a warning
    Blocked,  // changes adapters: is not run
};

// One row of the command table.
struct Command {
    CommandCode code;
    AccessClass access;
    void (*handler)(const Invocation&);
};

// Every command, in the order of the codes.
std::span<const Command> Commands();

// The table row of a code; null when there is none.
const Command* FindCommand(CommandCode code);

}  // namespace tavro
