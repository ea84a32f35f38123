#pragma once

#include <optional>
#include <string>

#include "cli/invocation.h"
#include "tavroapi/tcpip_records.h"

namespace tavro {

// Whether a VLAN ID is a decimal number from 0 to 4094.
bool IsValidVlanId(const std::string& vlanId);

// The settings that every change of TCP/IP settings sends beside its own: the VLAN ID as typed,
// VLANs disabled when that is exactly "0", priority "0", frames of 1500 bytes; everything else
// empty.
tavroapi::TcpIpSettings SettingsForVlan(const std::string& vlanId);

// What both kinds of DHCP settings begin with: `SettingsForVlan` of the VLAN ID that is typed.
// Nothing when there is none or operations cannot be performed, which is passed over in silence,
// and when the VLAN ID is invalid, whose message is shown.
std::optional<tavroapi::TcpIpSettings> SettingsForDhcp(const Invocation& invocation);

// The settings for the fixed IPv4 address that is typed. Checks address, VLAN ID, subnet mask and
// gateway in this order; for the first that is invalid shows its message and returns nothing.
std::optional<tavroapi::TcpIpSettings> SettingsForStaticIPv4(const Invocation& invocation);

}  // namespace tavro
