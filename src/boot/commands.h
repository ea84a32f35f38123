// The commands about booting from the network, group by group. The rows of a group stand in the
// source file that holds their handlers.
#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

std::span<const Command> IscsiBootCommands();
std::span<const Command> FcoeBootCommands();

}  // namespace tavro
