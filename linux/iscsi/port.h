#pragma once

#include <optional>
#include <span>
#include <string>

#include "linux/inventory/vpd.h"
#include "linux/netlink/ethtool_device.h"
#include "linux/netlink/ethtool_link.h"
#include "linux/netlink/links.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/tcpip_records.h"

// What the library tells of an iSCSI function and of what it proposes to targets.
namespace tavrolinux {

// All that is known of an interface as an iSCSI function, at one moment.
struct IscsiPort {
    std::string adapterName;
    std::string key;          // the address that names the function
    std::uint32_t place = 0;  // of its port on the adapter, from 0
    Link link;
    std::string kernelDriver;
    std::optional<DriverInformation> driver;
    std::optional<LinkModes> linkModes;
    ProductData product;
    tavroapi::TcpIpSettings tcpIp;
};

// A position of the record, and what stands there.
struct IscsiPortFact {
    tavroapi::iscsi_port::Position position;
    std::string (*tell)(const IscsiPort& port);
};
std::span<const IscsiPortFact> IscsiPortFacts();

// A position of the record of parameters that are proposed, and what stands there.
struct IscsiDefault {
    tavroapi::iscsi_defaults::Position position;
    const char* text;
};
std::span<const IscsiDefault> IscsiDefaults();

}  // namespace tavrolinux
