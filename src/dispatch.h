#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

// The command table: every command, in the order of the codes.
std::span<const Command* const> Commands();

// The table row of a code; null when there is none.
const Command* FindCommand(CommandCode code);

}  // namespace tavro
