// What the library tells about Ethernet ports.
#include "library/text/text.h"
#include "simulator/host/lookup.h"
#include "simulator/host/told_hardware.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::EthernetPortInfo;
using tavroapi::OperationCode;
namespace ethernet_port = tavroapi::ethernet_port;

Outcome ReadPort(const Viewed<EthernetPart>& at, EthernetPortInfo& info) {
    const EthernetPart& part = at.part;
    const ToldHardware hardware = HardwareOf(at.adapter, at.port, at.function);
    const EthernetSettings settings = part.settings.value_or(EthernetSettings{});
    const std::string& assigned = settings.locallyAdministeredAddress;
    info.NarrowText(ethernet_port::ModelName) = at.adapter.name;
    info.NarrowText(ethernet_port::SerialNumber) = hardware.serialNumber;
    info.NarrowText(ethernet_port::PartNumber) = hardware.partNumber;
    info.NarrowText(ethernet_port::CurrentMac) =
        NormalIdentifier(assigned).empty() ? at.function.mac : assigned;
    info.NarrowText(ethernet_port::PermanentMac) = at.function.mac;
    info.NarrowText(ethernet_port::LinkState) = hardware.linkStatus;
    info.NarrowText(ethernet_port::LinkSpeed) = hardware.linkSpeed;
    info.NarrowText(ethernet_port::MaximumLinkSpeed) = hardware.maximumSpeed;
    info.NarrowText(ethernet_port::Driver) = hardware.driver;
    info.NarrowText(ethernet_port::OptionRomVersion) = hardware.optionRomVersion;
    info.NarrowText(ethernet_port::BootCodeVersion) = hardware.bootCodeVersion;
    info.NarrowText(ethernet_port::FirmwareVersion) = hardware.firmwareVersion;
    info.NarrowText(ethernet_port::DriverVersion) = hardware.driverVersion;
    info.NarrowText(ethernet_port::LargestFrame) =
        settings.jumboPacket == tavroapi::SettingNotAvailable ? "1514" : settings.jumboPacket;
    info.NarrowText(ethernet_port::PciLocation) = hardware.pciLocation;
    info.wideText27 = WideFromUtf8(Utf8FromBytes(part.interfaceName));
    info.NarrowText(ethernet_port::LocallyAdministeredAddress) = assigned;
    info.NarrowText(ethernet_port::HardwareRevision) = hardware.hardwareRevision;
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
