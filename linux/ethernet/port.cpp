// What the library tells about Ethernet ports.
#include "linux/ethernet/port.h"

#include <algorithm>

#include "library/calls/setting_values.h"
#include "linux/inventory/link_texts.h"
#include "linux/serve/operation.h"

namespace tavrolinux {
namespace {

using tavroapi::EthernetPortInfo;
using tavroapi::OperationCode;
namespace ethernet_port = tavroapi::ethernet_port;

std::string AddressText(const std::optional<EthernetAddress>& address) {
    return address ? MacText(*address) : std::string();
}

std::string HighestSpeed(const EthernetDevice& device) {
    std::uint32_t highest = 0;
    if (device.linkModes) {
        for (const auto& [name, isOffered] : device.linkModes->modes) {
            highest = std::max(highest, SpeedOfMode(name).value_or(0));
        }
    }
    return highest != 0 ? SpeedText(highest) : std::string();
}

std::string PlaceOnBus(const EthernetDevice& device) {
    if (device.driver && !device.driver->bus.empty()) {
        return device.driver->bus;
    }
    return device.pci ? device.pci->Text() : std::string();
}

template <std::string DriverInformation::*Text>
std::string OfDriver(const EthernetDevice& device) {
    return device.driver ? (*device.driver).*Text : std::string();
}

constexpr PortFact Facts[] = {
    {ethernet_port::ModelName, [](const EthernetDevice& device) { return device.adapterName; }},
    {ethernet_port::SerialNumber,
     [](const EthernetDevice& device) {
         return device.onBus ? device.onBus->product.serialNumber : std::string();
     }},
    {ethernet_port::PartNumber,
     [](const EthernetDevice& device) {
         return device.onBus ? device.onBus->product.partNumber : std::string();
     }},
    {ethernet_port::CurrentMac,
     [](const EthernetDevice& device) { return AddressText(device.link.address); }},
    {ethernet_port::PermanentMac,
     [](const EthernetDevice& device) { return AddressText(device.link.permanentAddress); }},
    {ethernet_port::LinkState,
     [](const EthernetDevice& device) { return LinkStateText(device.link); }},
    {ethernet_port::LinkSpeed,
     [](const EthernetDevice& device) { return LinkSpeedText(device.link, device.linkModes); }},
    {ethernet_port::MaximumLinkSpeed, HighestSpeed},
    {ethernet_port::Driver, OfDriver<&DriverInformation::name>},
    {ethernet_port::OptionRomVersion, OfDriver<&DriverInformation::optionRom>},
    {ethernet_port::FirmwareVersion, OfDriver<&DriverInformation::firmware>},
    {ethernet_port::DriverVersion, OfDriver<&DriverInformation::version>},
    {ethernet_port::LargestFrame,
     [](const EthernetDevice& device) { return std::to_string(device.link.mtu + EthernetHeader); }},
    {ethernet_port::PciLocation, PlaceOnBus},
    {ethernet_port::LocallyAdministeredAddress,
     [](const EthernetDevice& device) {
         const auto assigned = AssignedAddressOf(device.link);
         return assigned ? MacText(*assigned) : std::string(tavrolib::NoAssignedAddress);
     }},
    {ethernet_port::HardwareRevision,
     [](const EthernetDevice& device) {
         return device.onBus ? device.onBus->revision : std::string();
     }},
    {ethernet_port::FlowControl,
     [](const EthernetDevice& device) { return FlowControlText(device.pause); }},
};

Outcome ReadPort(const Place& at, EthernetPortInfo& info) {
    Socket route(NETLINK_ROUTE);
    Ethtool ethtool;
    EthernetDevice device = ReadEthernetDevice(route, ethtool, at.adapter, at.interface);
    if (device.onBus) {
        AddProductData(at.interface, *device.onBus);
    }
    TellPort(device, info);
    return Done();
}

}  // namespace

std::span<const PortFact> PortFacts() {
    return Facts;
}

void TellPort(const EthernetDevice& device, EthernetPortInfo& info) {
    for (const PortFact& fact : Facts) {
        info.NarrowText(fact.position) = fact.tell(device);
    }
    info.wideText27 = WideFromUtf8(device.link.name);
}

std::span<const Operation> EthernetPortOperations() {
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ReadEthernetPort, FunctionKind::Ethernet, ReadPort>()};
    return Rows;
}

}  // namespace tavrolinux
