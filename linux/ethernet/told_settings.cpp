// The settings that are only told.
#include <algorithm>
#include <cmath>
#include <string_view>

#include "linux/ethernet/told_setting.h"

namespace tavrolinux {
namespace {

DeviceOnBus OnBus(const EthernetDevice& device) {
    return device.onBus.value_or(DeviceOnBus{});
}

// Devices without lanes tell none, or as many as the field can hold.
bool HasLanes(const DeviceOnBus& device) {
    return !device.width.empty() && device.width != "0" && device.width != "255";
}

ToldSetting TellBusType(const EthernetDevice& device) {
    const DeviceOnBus told = OnBus(device);
    if (told.bus == "pci") {
        return Fixed(HasLanes(told) ? "PCI Express" : "PCI");
    }
    return Fixed(told.bus == "usb" ? "USB" : told.bus);
}

ToldSetting TellInterruptMode(const EthernetDevice& device) {
    const std::string kind = OnBus(device).interrupts;
    return Fixed(kind == "msix" ? "MSI-X" : kind == "msi" ? "MSI" : "");
}

ToldSetting TellVirtualization(const EthernetDevice& device) {
    const DeviceOnBus told = OnBus(device);
    return told.virtualFunctions == 0 ? NotThere()
                                      : Fixed(SwitchText(told.presentVirtualFunctions != 0));
}

ToldSetting TellTimeStamping(const EthernetDevice& device) {
    const auto hasStamper = [&device](std::string_view prefix) {
        return std::ranges::any_of(device.timeStamping, [prefix](const auto& bit) {
            return bit.second && bit.first.starts_with(prefix);
        });
    };
    return Fixed(hasStamper("hardware-") ? "Hardware" : hasStamper("software-") ? "Software" : "");
}

ToldSetting TellTemperature(const EthernetDevice& device) {
    const auto temperature = OnBus(device).temperature;
    return Fixed(temperature ? std::to_string(std::lround(*temperature)) + " C" : std::string());
}

constexpr SettingRow ToldRows[] = {
    {2, TellInterruptMode},
    {3, [](const EthernetDevice& device) { return FixedNumber(OnBus(device).interruptCount); }},
    {6, TellBusType},
    {7,
     [](const EthernetDevice& device) {
         const DeviceOnBus told = OnBus(device);
         return Fixed(HasLanes(told) ? "x" + told.width : std::string());
     }},
    {11, [](const EthernetDevice& device) { return Fixed(OnBus(device).speed); }},
    {15, NotThere},  // the kernel tags frames itself where the device does not
    {18, [](const EthernetDevice& device) { return FixedNumber(OnBus(device).virtualFunctions); }},
    {19, TellVirtualization},
    {20, NotThere},  // the kernel does not tell how many filters there are
    {22, TellTimeStamping},
    {28, NotThere},  // it belongs to the adapter's firmware
    {30, TellTemperature},
};

}  // namespace

std::span<const SettingRow> ToldSettings() {
    return ToldRows;
}

}  // namespace tavrolinux
