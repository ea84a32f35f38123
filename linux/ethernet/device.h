#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "linux/inventory/machine.h"
#include "linux/inventory/vpd.h"
#include "linux/netlink/ethtool_device.h"
#include "linux/netlink/ethtool_link.h"
#include "linux/netlink/links.h"

namespace tavrolinux {

// What sysfs tells of the device that an interface stands on. An empty text is unknown.
struct DeviceOnBus {
    std::string bus;         // as the kernel calls it: "pci", "usb", "virtio"
    std::string revision;    // of a PCI device: "01"
    std::string width;       // how many lanes are in use: "8"
    std::string speed;       // of a lane: "8.0 GT/s"
    std::string interrupts;  // their kind, as the kernel calls it: "msix", "msi"
    std::size_t interruptCount = 0;
    std::uint64_t virtualFunctions = 0;         // that there can be
    std::uint64_t presentVirtualFunctions = 0;  // that there are
    std::optional<double> temperature;          // in degrees Celsius
    ProductData product;                        // where it was asked for
};

// All that the kernel tells of an Ethernet port and the device behind it, at one moment.
struct EthernetDevice {
    std::string adapterName;
    std::optional<PciPlace> pci;
    Link link;
    std::optional<DeviceOnBus> onBus;
    std::optional<DriverInformation> driver;
    std::optional<LinkModes> linkModes;
    std::optional<Pause> pause;
    std::optional<std::uint8_t> connector;
    std::optional<bool> isEnergyEfficient;
    Features features;
    std::optional<Rings> rings;
    std::optional<Channels> channels;
    std::optional<Coalescing> coalescing;
    std::optional<NamedBits> wakeUp;
    bool isWakeUpHidden = false;  // this process may not know it
    NamedBits timeStamping;
    std::size_t receiveQueues = 0;  // in use
    std::size_t sendQueues = 0;
};

// What sysfs tells of the interface's device, but not its product data; nothing where it has none.
std::optional<DeviceOnBus> ReadDeviceOnBus(const Interface& interface);

// Adds the product data, which many devices take a long time to tell.
void AddProductData(const Interface& interface, DeviceOnBus& device);

// Looks at the port anew, but not for product data. Throws SystemFailure, also where the interface
// is gone.
EthernetDevice ReadEthernetDevice(Socket& route, Ethtool& ethtool, const Adapter& adapter,
                                  const Interface& interface);

// What the displays of the port and of its settings have in common.

// The flow control as its setting calls it; "NA" where the device has none.
std::string FlowControlText(const std::optional<Pause>& pause);

// The address that somebody gave the port in place of its own; nothing where it has its own. A
// port without one has a given address when the bits of the address say so.
std::optional<EthernetAddress> AssignedAddressOf(const Link& link);

// In front of the data of a frame stand two addresses and its type, which the MTU does not count.
inline constexpr std::uint32_t EthernetHeader = 14;

}  // namespace tavrolinux
