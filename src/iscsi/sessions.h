// The commands for the sessions with an iSCSI target and the LUNs behind it:
// `-iscsi <MAC> -target -sessioninfo`, `-logout` and `-lunlist`.
#pragma once

#include <list>
#include <string>
#include <string_view>

#include "cli/arguments.h"

namespace tavro {

// Shows one session. Operands: target name, session number (0 when missing).
void ShowSession(const std::string& mac, Arguments arguments);

// Ends sessions. Operands: target name, session numbers separated by commas (0 when missing).
void LogOutOfTarget(const std::string& mac, Arguments arguments);

// Lists the LUNs of a target. Operand: target name.
void ListLuns(const std::string& mac, Arguments arguments);

// The session numbers of a list such as "3,5". Splitting stops at a comma that has nothing in
// front: what is left from there on is one entry, commas included ("3,,5" gives "3" and ",5").
std::list<std::string> SplitSessionIds(std::string_view text);

}  // namespace tavro
