#include "linux/ethernet/device.h"

#include <algorithm>
#include <string_view>

#include "linux/system/attribute.h"
#include "linux/system/failure.h"
#include "tavroapi/ethernet_records.h"

namespace tavrolinux {
namespace {

// A text that says nothing but that nothing is known is none.
std::string KnownAttribute(const std::filesystem::path& file) {
    const std::string text = ReadAttribute(file);
    return text.starts_with("Unknown") ? std::string() : text;
}

// Without what the first digits are preceded and followed by: "01" of "0x01", "8.0 GT/s" of
// "8.0 GT/s PCIe".
std::string Bare(std::string text, std::string_view before, std::string_view behind) {
    if (text.starts_with(before)) {
        text.erase(0, before.size());
    }
    if (text.ends_with(behind)) {
        text.resize(text.size() - behind.size());
    }
    return text;
}

std::optional<double> TemperatureOf(const std::filesystem::path& device) {
    constexpr double Thousandths = 1000.0;
    const std::filesystem::path monitors = device / "hwmon";
    for (const std::string& monitor : NamesIn(monitors)) {
        if (const auto told = ReadNumber(monitors / monitor / "temp1_input")) {
            return static_cast<double>(*told) / Thousandths;
        }
    }
    return std::nullopt;
}

// The folder of the device that an interface stands on. What stands on a bridge of its own, as
// virtio does, has its hardware below that.
std::optional<std::filesystem::path> FolderOfDevice(const Interface& interface) {
    if (interface.folder.empty()) {
        return std::nullopt;
    }
    const auto own = Resolved(interface.folder / "device");
    return own && interface.pci ? interface.pci->device : own;
}

// The queues in use are folders. Where sysfs does not show the interface, those it was made with
// are told.
std::size_t QueuesOf(const Interface& interface, std::string_view prefix, std::size_t made) {
    if (interface.folder.empty()) {
        return made;
    }
    const auto names = NamesIn(interface.folder / "queues");
    return static_cast<std::size_t>(std::ranges::count_if(
        names, [prefix](const std::string& name) { return name.starts_with(prefix); }));
}

}  // namespace

std::optional<DeviceOnBus> ReadDeviceOnBus(const Interface& interface) {
    const auto folder = FolderOfDevice(interface);
    if (!folder) {
        return std::nullopt;
    }
    const std::filesystem::path& device = *folder;
    DeviceOnBus told;
    told.bus = LinkedName(device / "subsystem");
    told.revision = Bare(KnownAttribute(device / "revision"), "0x", "");
    told.width = KnownAttribute(device / "current_link_width");
    told.speed = Bare(KnownAttribute(device / "current_link_speed"), "", " PCIe");
    const auto interrupts = NamesIn(device / "msi_irqs");
    told.interruptCount = interrupts.size();
    if (!interrupts.empty()) {
        told.interrupts = ReadAttribute(device / "msi_irqs" / interrupts.front());
    }
    told.virtualFunctions = ReadNumber(device / "sriov_totalvfs").value_or(0);
    told.presentVirtualFunctions = ReadNumber(device / "sriov_numvfs").value_or(0);
    told.temperature = TemperatureOf(device);
    return told;
}

void AddProductData(const Interface& interface, DeviceOnBus& device) {
    const auto folder = FolderOfDevice(interface);
    device.product = (folder ? ReadProductData(*folder) : std::nullopt).value_or(ProductData{});
}

EthernetDevice ReadEthernetDevice(Socket& route, Ethtool& ethtool, const Adapter& adapter,
                                  const Interface& interface) {
    EthernetDevice device;
    device.adapterName = adapter.name;
    device.pci = interface.pci;
    device.link = ReadLink(route, interface.index);
    const Link& link = device.link;
    device.onBus = ReadDeviceOnBus(interface);
    device.driver = ReadDriverInformation(link);
    device.linkModes = ReadLinkModes(ethtool, link);
    device.pause = ReadPause(ethtool, link);
    device.connector = ReadConnector(ethtool, link);
    device.isEnergyEfficient = ReadEnergyEfficiency(ethtool, link);
    device.features = ReadFeatures(ethtool, link);
    device.rings = ReadRings(ethtool, link);
    device.channels = ReadChannels(ethtool, link);
    device.coalescing = ReadCoalescing(ethtool, link);
    try {
        device.wakeUp = ReadWakeUp(ethtool, link);
    } catch (const SystemFailure& failure) {
        if (!failure.IsMissingRight()) {
            throw;
        }
        device.isWakeUpHidden = true;
    }
    device.timeStamping = ReadTimeStamping(ethtool, link);
    device.receiveQueues = QueuesOf(interface, "rx-", link.receiveQueues);
    device.sendQueues = QueuesOf(interface, "tx-", link.sendQueues);
    return device;
}

std::string FlowControlText(const std::optional<Pause>& pause) {
    if (!pause) {
        return tavroapi::SettingNotAvailable;
    }
    if (pause->negotiates) {
        return "Auto Negotiation";
    }
    if (pause->receives) {
        return pause->sends ? "Rx & Tx Enabled" : "Rx Enabled";
    }
    return pause->sends ? "Tx Enabled" : "Disabled";
}

std::optional<EthernetAddress> AssignedAddressOf(const Link& link) {
    constexpr std::uint8_t LocallyAdministered = 2;
    const bool isAssigned =
        link.address &&
        (link.permanentAddress ? link.address != link.permanentAddress
                               : (link.address->front() & LocallyAdministered) != 0);
    return isAssigned ? link.address : std::nullopt;
}

}  // namespace tavrolinux
