#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// `-iscsi <MAC> -modifytcpip -dhcp <VLAN ID>`: has an iSCSI function take its IPv4 address by DHCP.
// Without a VLAN ID, or without the library's entry point, nothing happens.
void SetIscsiTcpIpByDhcp(const std::string& mac, Arguments arguments);

// `-iscsi <MAC> -modifytcpip -static <VLAN ID> <address> <subnet mask> <gateway>`: gives an iSCSI
// function a fixed IPv4 address.
void SetIscsiTcpIpStatically(const std::string& mac, Arguments arguments);

}  // namespace tavro
