// The commands for iSCSI targets: `-iscsi <MAC> -target -listall`, `-listactive`, `-getinfo`,
// `-login` and `-remove`.
#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// Lists the targets that the port's initiator has discovered.
void ListTargets(const std::string& mac);

// Lists the targets that the port's initiator is connected to.
void ListActiveTargets(const std::string& mac);

// Shows one target. Operand: target name.
void ShowTarget(const std::string& mac, Arguments arguments);

// Logs in to a target, after a question when it has not been discovered. Operands: target name,
// portal address, port number (the default one when missing or refused), login options.
void LogInToTarget(const std::string& mac, Arguments arguments);

// Makes the initiator forget a target. Operand: target name.
void RemoveTarget(const std::string& mac, Arguments arguments);

}  // namespace tavro
