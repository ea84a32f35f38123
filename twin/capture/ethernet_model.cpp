#include "library/text/text.h"
#include "simulator/model/from_records.h"
#include "twin/capture/function_model.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;

tavrosim::FunctionHardware HardwareFrom(tavroapi::EthernetPortInfo& info) {
    namespace ethernet_port = tavroapi::ethernet_port;
    tavrosim::FunctionHardware hardware;
    StateText(hardware.driver, info.NarrowText(ethernet_port::Driver));
    StateText(hardware.driverVersion, info.NarrowText(ethernet_port::DriverVersion));
    StateText(hardware.serialNumber, info.NarrowText(ethernet_port::SerialNumber));
    StateText(hardware.partNumber, info.NarrowText(ethernet_port::PartNumber));
    StateText(hardware.hardwareRevision, info.NarrowText(ethernet_port::HardwareRevision));
    StateText(hardware.firmwareVersion, info.NarrowText(ethernet_port::FirmwareVersion));
    StateText(hardware.bootCodeVersion, info.NarrowText(ethernet_port::BootCodeVersion));
    StateText(hardware.optionRomVersion, info.NarrowText(ethernet_port::OptionRomVersion));
    StateText(hardware.linkStatus, info.NarrowText(ethernet_port::LinkState));
    StateText(hardware.maximumSpeed, info.NarrowText(ethernet_port::MaximumLinkSpeed));
    StateText(hardware.pciLocation, info.NarrowText(ethernet_port::PciLocation));
    return hardware;
}

}  // namespace

tavrosim::EthernetPart EthernetPartFrom(const Told& told, const std::string& key,
                                        const std::string& interfaceName) {
    tavrosim::EthernetPart part;
    part.interfaceName = interfaceName;
    if (auto info = told.By<OperationCode::ReadEthernetPort>(key)) {
        part.hardware = HardwareFrom(*info);
        if (part.interfaceName.empty()) {
            part.interfaceName = tavrolib::BytesFromUtf8(tavrolib::Utf8FromWide(info->wideText27));
        }
    }
    if (const auto settings = told.By<OperationCode::ReadAdapterSettings>(key)) {
        part.settings = tavrosim::EthernetSettingsFrom(*settings);
    }
    if (const auto statistics =
            told.By<OperationCode::ReadEthernetStatistics>(key, tavroapi::StatisticsFlag{1})) {
        part.statistics.emplace().counters = tavrosim::EthernetCountersFrom(*statistics);
    }
    if (const auto settings = told.By<OperationCode::ReadEthernetTcpIp>(key)) {
        part.tcpIp = tavrosim::TcpIpFrom(*settings);
    }
    return part;
}

}  // namespace tavrohost
