#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "linux/inventory/machine.h"

struct pci_access;  // NOLINT(readability-identifier-naming): the library's own

namespace tavrolinux {

// Where the device is found on the PCI bus, itself or, as a virtio device, through what it is part
// of; nothing for a device of another bus. `device` is its folder in sysfs, without links.
std::optional<PciPlace> PciPlaceOf(std::filesystem::path device);

// The table of the names of PCI devices, which is read when the first name is wanted.
class PciNames {
  public:
    PciNames();

    // What vendor and device are called, else their numbers: "Device 1af4:1041".
    std::string NameOf(const PciPlace& place);

  private:
    std::unique_ptr<pci_access, void (*)(pci_access*)> access_;
};

}  // namespace tavrolinux
