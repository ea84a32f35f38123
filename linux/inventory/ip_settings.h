#pragma once

#include <optional>
#include <vector>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"
#include "tavroapi/tcpip_records.h"

// The TCP/IP settings of an interface, which its Ethernet and its iSCSI function share.
namespace tavrolinux {

// What the read-out shows of the interface's addresses: the first global one that is there for
// good, else the first global one that was leased or announced; nothing where there is none.
// Addresses of IPv6 that were made up for privacy never are.
std::optional<AssignedAddress> ShownAddress(const std::vector<AssignedAddress>& addresses);

// The settings as they are now. An address that is not set is all zeros; VLANs are interfaces of
// their own, so there is none; the largest frame and the priority are no settings of this host and
// stay empty. Throws SystemFailure.
tavroapi::TcpIpSettings ReadIpSettings(Socket& route, const Link& link);

}  // namespace tavrolinux
