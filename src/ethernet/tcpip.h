#pragma once

#include <string>

#include "cli/arguments.h"

namespace tavro {

// `-ethernet <MAC> -gettcpip`: shows the VLAN, IPv4 and IPv6 settings of an Ethernet function.
void ShowEthernetTcpIp(const std::string& mac);

// `-ethernet <MAC> -modifytcpip <family> -dhcp <VLAN ID>`: has an Ethernet function take its
// address by DHCP. The family is IPv4 when it is exactly "-ipv4", else IPv6. Without a VLAN ID, or
// without the library's entry point, nothing happens.
void SetEthernetTcpIpByDhcp(const std::string& mac, Arguments arguments);

// `-ethernet <MAC> -modifytcpip <family> -static <VLAN ID> <address> ...`: gives an Ethernet
// function a fixed address. IPv4: subnet mask and gateway follow; IPv6: prefix length and gateway
// may follow.
void SetEthernetTcpIpStatically(const std::string& mac, Arguments arguments);

}  // namespace tavro
