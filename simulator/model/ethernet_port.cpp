// What the library tells about Ethernet ports.
#include "simulator/host/ethernet_port.h"

#include "library/text/text.h"
#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::EthernetPortInfo;
using tavroapi::OperationCode;
namespace ethernet_port = tavroapi::ethernet_port;

// The speed follows the setting once there is a link, and that is the fastest one unless chosen.
std::string SpeedOf(const EthernetPort& port, const EthernetSettings& settings) {
    if (port.linkStatus != LinkUp) {
        return "None";
    }
    const std::string& chosen = settings.speed;
    return chosen == "Auto Negotiation" || chosen == tavroapi::SettingNotAvailable
               ? port.maximumSpeed
               : chosen;
}

std::string SerialNumberOf(const EthernetPort& port, const Adapter& adapter) {
    constexpr std::uint32_t First = 10000001;
    return port.serialNumber.empty() ? "TV" + std::to_string(First + adapter.number)
                                     : port.serialNumber;
}

std::string PciLocationOf(const EthernetPort& port, const Adapter& adapter,
                          const Function& function) {
    constexpr std::uint32_t FirstBus = 4;
    return port.pciLocation.empty() ? "bus " + std::to_string(FirstBus + adapter.number) +
                                          ", device 0, function " + std::to_string(function.number)
                                    : port.pciLocation;
}

Outcome ReadPort(const Viewed<EthernetPart>& at, EthernetPortInfo& info) {
    const EthernetPart& part = at.part;
    const EthernetPort port = part.port.value_or(EthernetPort{});
    const EthernetSettings settings = part.settings.value_or(EthernetSettings{});
    const std::string& assigned = settings.locallyAdministeredAddress;
    info.NarrowText(ethernet_port::ModelName) = at.adapter.name;
    info.NarrowText(ethernet_port::SerialNumber) = SerialNumberOf(port, at.adapter);
    info.NarrowText(ethernet_port::PartNumber) = port.partNumber;
    info.NarrowText(ethernet_port::CurrentMac) =
        NormalIdentifier(assigned).empty() ? at.function.mac : assigned;
    info.NarrowText(ethernet_port::PermanentMac) = at.function.mac;
    info.NarrowText(ethernet_port::LinkState) = port.linkStatus;
    info.NarrowText(ethernet_port::LinkSpeed) = SpeedOf(port, settings);
    info.NarrowText(ethernet_port::MaximumLinkSpeed) = port.maximumSpeed;
    info.NarrowText(ethernet_port::Driver) = port.driverName;
    info.NarrowText(ethernet_port::OptionRomVersion) = port.optionRomVersion;
    info.NarrowText(ethernet_port::BootCodeVersion) = port.bootCodeVersion;
    info.NarrowText(ethernet_port::FirmwareVersion) = port.firmwareVersion;
    info.NarrowText(ethernet_port::DriverVersion) = port.driverVersion;
    info.NarrowText(ethernet_port::LargestFrame) =
        settings.jumboPacket == tavroapi::SettingNotAvailable ? "1514" : settings.jumboPacket;
    info.NarrowText(ethernet_port::PciLocation) = PciLocationOf(port, at.adapter, at.function);
    info.wideText27 = WideFromUtf8(Utf8FromBytes(part.interfaceName));
    info.NarrowText(ethernet_port::LocallyAdministeredAddress) = assigned;
    info.NarrowText(ethernet_port::HardwareRevision) = port.hardwareRevision;
    info.NarrowText(ethernet_port::FlowControl) = settings.flowControl;
    return Done();
}

}  // namespace

std::span<const OperationModel> EthernetPortOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadEthernetPort, EthernetPart, ReadPort>()};
    return Rows;
}

}  // namespace tavrosim
