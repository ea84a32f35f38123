#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// `-iscsi -getinitiator`: shows the name of the host's iSCSI initiator.
void GetInitiator();

// `-iscsi -setinitiator <name> [login options]`: sets the initiator's name and how it logs in. May
// ask for CHAP names and secrets.
void SetInitiator(Arguments arguments);

// `-iscsi <MAC> -ping <address>`: pings an address from an iSCSI port and shows how many replies
// came. Throws std::invalid_argument or std::out_of_range when the library's count of replies is no
// 32-bit number.
void PingFromIscsiPort(const std::string& mac, Arguments arguments);

}  // namespace tavro
