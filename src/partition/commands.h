// The commands that divide an adapter, group by group. The rows of a group stand in the source file
// that holds their handlers.
#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

std::span<const Command> PartitionCommands();
std::span<const Command> PersonalityCommands();

}  // namespace tavro
