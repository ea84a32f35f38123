// The commands of Ethernet ports, group by group. The rows of a group stand in the source file that
// holds their handlers.
#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

std::span<const Command> EthernetPortCommands();
std::span<const Command> EthernetStatisticsCommands();
std::span<const Command> AdapterSettingCommands();
std::span<const Command> EthernetTcpIpCommands();
std::span<const Command> XmlExportCommands();

}  // namespace tavro
