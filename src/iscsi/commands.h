// The commands of the host's iSCSI initiator and of its ports, group by group. The rows of a group
// stand in the source file that holds their handlers.
#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

std::span<const Command> InitiatorCommands();
std::span<const Command> IsnsCommands();
std::span<const Command> IscsiPortCommands();
std::span<const Command> IscsiTcpIpCommands();
std::span<const Command> PortalCommands();
std::span<const Command> IscsiTargetCommands();
std::span<const Command> SessionCommands();

}  // namespace tavro
