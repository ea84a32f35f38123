#include "simulator/host/former_hardware.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/host/told_hardware.h"

namespace tavrosim {
namespace {

using OwnText = std::optional<std::string> FunctionHardware::*;

// What earlier versions wrote for every function, whether or not somebody had chosen it.
constexpr std::pair<OwnText, std::string_view> FormerDefaults[] = {
    {&FunctionHardware::driver, "tavronet"},
    {&FunctionHardware::driver, "tavroi"},
    {&FunctionHardware::driver, "tavrof"},
    {&FunctionHardware::driverVersion, "5.2.3.1"},
    {&FunctionHardware::serialNumber, ""},
    {&FunctionHardware::partNumber, "TV-10G"},
    {&FunctionHardware::hardwareRevision, "1"},
    {&FunctionHardware::hardwareRevision, "B0"},
    {&FunctionHardware::firmwareVersion, "5.2.0.9"},
    {&FunctionHardware::firmwareVersion, "5.2.3.0"},
    {&FunctionHardware::bootCodeVersion, "5.1.4"},
    {&FunctionHardware::bootCodeVersion, "5.2.3"},
    {&FunctionHardware::optionRomVersion, "5.1.0"},
    {&FunctionHardware::optionRomVersion, "5.2.1.0"},
    {&FunctionHardware::maximumSpeed, "10 Gbps"},
    {&FunctionHardware::pciLocation, ""},
    {&FunctionHardware::deviceName, ""},
};

template <class Shared>
using SharedText = std::pair<OwnText, std::string Shared::*>;

constexpr SharedText<Card> CardTexts[] = {
    {&FunctionHardware::serialNumber, &Card::serialNumber},
    {&FunctionHardware::partNumber, &Card::partNumber},
    {&FunctionHardware::hardwareRevision, &Card::hardwareRevision},
    {&FunctionHardware::firmwareVersion, &Card::firmwareVersion},
    {&FunctionHardware::bootCodeVersion, &Card::bootCodeVersion},
    {&FunctionHardware::optionRomVersion, &Card::optionRomVersion},
};

constexpr SharedText<PortLink> LinkStatus[] = {{&FunctionHardware::linkStatus, &PortLink::status}};
constexpr SharedText<PortLink> LinkSpeed[] = {
    {&FunctionHardware::maximumSpeed, &PortLink::maximumSpeed}};

// "10 Gbit/s" is "10 Gbps".
void SpellSpeed(std::string& speed) {
    constexpr std::string_view Former = "bit/s";
    if (speed.ends_with(Former)) {
        speed.replace(speed.size() - Former.size(), Former.size(), "bps");
    }
}

// The version of the boot code stood with the boot settings.
void MoveBootCodeVersion(Function& function) {
    if (function.fcoe && function.fcoe->boot && function.fcoe->boot->codeVersion) {
        auto& own = OwnHardware(function);
        FunctionHardware& hardware = own ? *own : own.emplace();
        if (!hardware.bootCodeVersion) {
            hardware.bootCodeVersion = std::exchange(function.fcoe->boot->codeVersion, {});
        }
    }
}

void DropFormerDefaults(FunctionHardware& hardware) {
    for (const auto& [text, value] : FormerDefaults) {
        if (hardware.*text == value) {
            (hardware.*text).reset();
        }
    }
}

// What of `texts` the functions state, taken over into `shared`.
template <class Shared>
void TakeOver(const std::vector<FunctionHardware*>& functions,
              std::span<const SharedText<Shared>> texts, Shared& shared) {
    for (const SharedText<Shared>& text : texts) {
        const OwnText own = text.first;
        const auto first = std::ranges::find_if(
            functions, [own](const FunctionHardware* each) { return (each->*own).has_value(); });
        if (first == functions.end()) {
            continue;
        }
        shared.*text.second = *((*first)->*own);
        for (FunctionHardware* const each : functions) {
            if (each->*own == shared.*text.second) {
                (each->*own).reset();
            }
        }
    }
}

// The link that the port's functions state. Where one says that it is up, nobody loses it by what
// another one says: a function that differs keeps its own status.
PortLink LinkOf(const std::vector<FunctionHardware*>& functions) {
    PortLink link;
    TakeOver<PortLink>(functions, LinkSpeed, link);
    const bool isUp = std::ranges::any_of(
        functions, [](const FunctionHardware* each) { return each->linkStatus == LinkUp; });
    if (!isUp) {
        TakeOver<PortLink>(functions, LinkStatus, link);
    }
    return link;
}

template <class Shared>
Shared& MadeWhereMissing(std::optional<Shared>& shared) {
    return shared ? *shared : shared.emplace();
}

void DropFormerDefaults(Adapter& adapter) {
    for (Port& port : adapter.ports) {
        for (Function& function : port.functions) {
            if (auto& own = OwnHardware(function)) {
                DropFormerDefaults(*own);
            }
        }
    }
}

// The port's texts as they are written now.
void Respell(Port& port) {
    if (port.link) {
        SpellSpeed(port.link->maximumSpeed);
    }
    for (Function& function : port.functions) {
        MoveBootCodeVersion(function);
        if (auto& own = OwnHardware(function); own && own->maximumSpeed) {
            SpellSpeed(*own->maximumSpeed);
        }
    }
}

}  // namespace

void ShareHardware(Adapter& adapter) {
    std::vector<FunctionHardware*> ofCard;
    for (Port& port : adapter.ports) {
        std::vector<FunctionHardware*> ofPort;
        for (Function& function : port.functions) {
            if (auto& own = OwnHardware(function)) {
                ofPort.push_back(&*own);
            }
        }
        if (!port.link) {
            port.link = LinkOf(ofPort);
        }
        for (FunctionHardware* const each : ofPort) {
            if (each->linkStatus == port.link->status) {
                each->linkStatus.reset();
            }
        }
        ofCard.insert(ofCard.end(), ofPort.begin(), ofPort.end());
    }
    TakeOver<Card>(ofCard, CardTexts, MadeWhereMissing(adapter.card));
    for (Port& port : adapter.ports) {
        for (Function& function : port.functions) {
            if (auto& own = OwnHardware(function); own == FunctionHardware{}) {
                own.reset();
            }
        }
    }
}

void StateHardwareOnce(Host& host) {
    for (Adapter& adapter : host.adapters) {
        for (Port& port : adapter.ports) {
            Respell(port);
        }
        if (!adapter.card) {
            DropFormerDefaults(adapter);
            ShareHardware(adapter);
        }
    }
}

}  // namespace tavrosim
