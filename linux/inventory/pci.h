#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "linux/inventory/machine.h"

namespace tavrolinux {

// Where the device is found on the PCI bus, itself or, as a virtio device, through what it is part
// of; nothing for a device of another bus. `device` is its folder in sysfs, without links.
std::optional<PciPlace> PciPlaceOf(std::filesystem::path device);

// What vendor and device are called, else their numbers: "Device 1af4:1041".
std::string PciDeviceName(const PciPlace& place);

}  // namespace tavrolinux
