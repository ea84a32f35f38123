#pragma once

#include <string>

#include "simulator/host/host.h"

namespace tavrosim {

// What the function states of its hardware, with the part that makes it one of its kind. The
// function must be of a kind.
template <class AnyFunction>
auto& OwnHardware(AnyFunction& function) {
    return function.ethernet ? function.ethernet->hardware
           : function.iscsi  ? function.iscsi->hardware
                             : function.fcoe->hardware;
}

// What is told of a function's hardware, the same whatever the kind of the function: what it states
// of its own, else what its card and port state.
struct ToldHardware {
    std::string driver;
    std::string driverVersion;
    std::string serialNumber;
    std::string partNumber;
    std::string hardwareRevision;
    std::string firmwareVersion;
    std::string bootCodeVersion;
    std::string optionRomVersion;
    std::string linkStatus;
    std::string maximumSpeed;
    std::string linkSpeed;  // "None" without a link
    std::string pciLocation;
    std::string deviceName;
};

// The function is one of the port, which is one of the adapter.
ToldHardware HardwareOf(const Adapter& adapter, const Port& port, const Function& function);

}  // namespace tavrosim
