// What the library tells about Ethernet ports.
#include "simulator/host/ethernet_port.h"

#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "simulator/text.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::EthernetPortInfo;
using tavroapi::OperationCode;

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

Outcome ReadPort(const Host& host, const std::string& request, EthernetPortInfo& info) {
    const auto found = FindEthernetFunction(host, request);
    if (!found) {
        return UnknownIdentifier(request, L"Ethernet");
    }
    const EthernetPart& part = *found.function->ethernet;
    const EthernetPort port = part.port.value_or(EthernetPort{});
    const EthernetSettings settings = part.settings.value_or(EthernetSettings{});
    const std::string& assigned = settings.locallyAdministeredAddress;
    info.texts0To26[0] = found.adapter->name;
    info.texts0To26[1] = SerialNumberOf(port, *found.adapter);
    info.texts0To26[2] = port.partNumber;
    info.texts0To26[6] = NormalIdentifier(assigned).empty() ? found.function->mac : assigned;
    info.texts0To26[7] = found.function->mac;
    info.texts0To26[9] = port.linkStatus;
    info.texts0To26[10] = SpeedOf(port, settings);
    info.texts0To26[12] = port.maximumSpeed;
    info.texts0To26[13] = port.driverName;
    info.texts0To26[14] = port.optionRomVersion;
    info.texts0To26[15] = port.bootCodeVersion;
    info.texts0To26[16] = port.firmwareVersion;
    info.texts0To26[22] = port.driverVersion;
    info.texts0To26[23] =
        settings.jumboPacket == tavroapi::SettingNotAvailable ? "1514" : settings.jumboPacket;
    info.texts0To26[26] = PciLocationOf(port, *found.adapter, *found.function);
    info.wideText27 = WideFromUtf8(Utf8FromBytes(part.interfaceName));
    info.texts28To32[29 - 28] = assigned;
    info.texts28To32[31 - 28] = port.hardwareRevision;
    info.texts28To32[32 - 28] = settings.flowControl;
    return Done();
}

constexpr OperationModel Rows[] = {Reads<OperationCode::ReadEthernetPort, ReadPort>()};

}  // namespace

std::span<const OperationModel> EthernetPortOperations() {
    return Rows;
}

}  // namespace tavrosim
