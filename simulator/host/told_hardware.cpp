#include "simulator/host/told_hardware.h"

#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

const std::string& StatedOr(const std::optional<std::string>& own, const std::string& shared) {
    return own && !own->empty() ? *own : shared;
}

const std::string& DriverOf(const Drivers& drivers, const Function& function) {
    return function.fcoe ? drivers.fcoe : function.iscsi ? drivers.iscsi : drivers.ethernet;
}

std::string SerialNumberOf(const Card& card, const Adapter& adapter) {
    constexpr std::uint32_t First = 10000001;
    return card.serialNumber.empty() ? "TV" + std::to_string(First + adapter.number)
                                     : card.serialNumber;
}

std::string PciLocationOf(const Adapter& adapter, const Function& function) {
    constexpr std::uint32_t FirstBus = 4;
    return "bus " + std::to_string(FirstBus + adapter.number) + ", device 0, function " +
           std::to_string(function.number);
}

// A port has one link: the first of its Ethernet functions that has a speed of its own chooses it.
std::string SpeedOf(const Port& port, const std::string& status, const std::string& maximum) {
    if (status != LinkUp) {
        return "None";
    }
    for (const Function& function : port.functions) {
        if (function.ethernet && function.ethernet->settings) {
            const std::string& chosen = function.ethernet->settings->speed;
            if (chosen != FastestSpeed && chosen != tavroapi::SettingNotAvailable) {
                return chosen;
            }
        }
    }
    return maximum;
}

}  // namespace

ToldHardware HardwareOf(const Adapter& adapter, const Port& port, const Function& function) {
    const Card card = adapter.card.value_or(Card{});
    const PortLink link = port.link.value_or(PortLink{});
    const FunctionHardware own = OwnHardware(function).value_or(FunctionHardware{});
    ToldHardware told;
    told.driver = StatedOr(own.driver, DriverOf(card.drivers, function));
    told.driverVersion = StatedOr(own.driverVersion, card.drivers.version);
    told.serialNumber = StatedOr(own.serialNumber, SerialNumberOf(card, adapter));
    told.partNumber = StatedOr(own.partNumber, card.partNumber);
    told.hardwareRevision = StatedOr(own.hardwareRevision, card.hardwareRevision);
    told.firmwareVersion = StatedOr(own.firmwareVersion, card.firmwareVersion);
    told.bootCodeVersion = StatedOr(own.bootCodeVersion, card.bootCodeVersion);
    told.optionRomVersion = StatedOr(own.optionRomVersion, card.optionRomVersion);
    told.linkStatus = StatedOr(own.linkStatus, link.status);
    told.maximumSpeed = StatedOr(own.maximumSpeed, link.maximumSpeed);
    told.linkSpeed = SpeedOf(port, told.linkStatus, told.maximumSpeed);
    told.pciLocation = StatedOr(own.pciLocation, PciLocationOf(adapter, function));
    told.deviceName = StatedOr(own.deviceName, std::string());
    return told;
}

}  // namespace tavrosim
