// The commands of FCoE ports, group by group. The rows of a group stand in the source file that
// holds their handlers.
#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

std::span<const Command> FcoePortCommands();
std::span<const Command> FcoeTargetCommands();
std::span<const Command> DcbCommands();
std::span<const Command> DcbDialogueCommands();
std::span<const Command> FipPingCommands();
std::span<const Command> VirtualPortCommands();

}  // namespace tavro
