#pragma once

#include <optional>
#include <string>

#include "simulator/host/member.h"

// The hardware of the host: what an adapter's functions share is stated once, with the card or the
// port.
namespace tavrosim {

// The drivers of a card, one for each kind of function. They come together, in one version.
struct Drivers {
    std::string ethernet = "tavronet";
    std::string iscsi = "tavroi";
    std::string fcoe = "tavrof";
    std::string version = "5.2.3.1";

    static constexpr auto Members(auto visit) {
        return visit(Member{"ethernet", &Drivers::ethernet}, Member{"iscsi", &Drivers::iscsi},
                     Member{"fcoe", &Drivers::fcoe}, Member{"version", &Drivers::version});
    }
};

// What all functions of an adapter share.
struct Card {
    std::string serialNumber;  // where empty, made from the adapter's number
    std::string partNumber = "TV-10G";
    std::string hardwareRevision = "B0";
    std::string firmwareVersion = "5.2.3.0";
    std::string bootCodeVersion = "5.2.3";
    std::string optionRomVersion = "5.2.1.0";
    Drivers drivers;

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"serialNumber", &Card::serialNumber}, Member{"partNumber", &Card::partNumber},
            Member{"hardwareRevision", &Card::hardwareRevision},
            Member{"firmwareVersion", &Card::firmwareVersion},
            Member{"bootCodeVersion", &Card::bootCodeVersion},
            Member{"optionRomVersion", &Card::optionRomVersion}, Member{"drivers", &Card::drivers});
    }
};

// The status of a link that has a speed and traffic.
inline constexpr const char* LinkUp = "Up";

// What all functions of a port share.
struct PortLink {
    std::string status = LinkUp;
    std::string maximumSpeed = "10 Gbps";

    static constexpr auto Members(auto visit) {
        return visit(Member{"status", &PortLink::status},
                     Member{"maximumSpeed", &PortLink::maximumSpeed});
    }
};

// What a function states of its own: where it is found, and what differs from its card and port. A
// text that is empty states nothing.
struct FunctionHardware {
    std::optional<std::string> driver;
    std::optional<std::string> driverVersion;
    std::optional<std::string> serialNumber;
    std::optional<std::string> partNumber;
    std::optional<std::string> hardwareRevision;
    std::optional<std::string> firmwareVersion;
    std::optional<std::string> bootCodeVersion;
    std::optional<std::string> optionRomVersion;
    std::optional<std::string> linkStatus;
    std::optional<std::string> maximumSpeed;
    std::optional<std::string> pciLocation;  // of Ethernet; else made from the numbers
    std::optional<std::string> deviceName;   // of FCoE

    bool operator==(const FunctionHardware&) const = default;

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"driver", &FunctionHardware::driver},
            Member{"driverVersion", &FunctionHardware::driverVersion},
            Member{"serialNumber", &FunctionHardware::serialNumber},
            Member{"partNumber", &FunctionHardware::partNumber},
            Member{"hardwareRevision", &FunctionHardware::hardwareRevision},
            Member{"firmwareVersion", &FunctionHardware::firmwareVersion},
            Member{"bootCodeVersion", &FunctionHardware::bootCodeVersion},
            Member{"optionRomVersion", &FunctionHardware::optionRomVersion},
            Member{"linkStatus", &FunctionHardware::linkStatus},
            Member{"maximumSpeed", &FunctionHardware::maximumSpeed},
            Member{"pciLocation", &FunctionHardware::pciLocation},
            Member{"deviceName", &FunctionHardware::deviceName},
            Member{"driverName", &FunctionHardware::driver, Presence::Former},
            Member{"hardwareVersion", &FunctionHardware::hardwareRevision, Presence::Former},
            Member{"linkState", &FunctionHardware::linkStatus, Presence::Former},
            Member{"linkSpeed", &FunctionHardware::maximumSpeed, Presence::Former});
    }
};

}  // namespace tavrosim
