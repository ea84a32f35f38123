#pragma once

#include "simulator/host/host.h"

// Functions of a captured host that are one interface of its operating system.
namespace tavrosim {

// The TCP/IP settings of an Ethernet or iSCSI function; null for any other.
const TcpIp* TcpIpOf(const Function& function);

// Whether both are functions of one interface. A captured function that has no VLAN priority is one
// of an interface of its system: the system has the VLANs, and the functions with that MAC share
// the interface's addresses.
bool IsSameInterface(const Function& one, const Function& other);

}  // namespace tavrosim
