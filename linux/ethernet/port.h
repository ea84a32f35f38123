#pragma once

#include <span>
#include <string>

#include "linux/ethernet/device.h"
#include "tavroapi/ethernet_records.h"

namespace tavrolinux {

// What is told at one position of the record about an Ethernet port, and where it comes from.
struct PortFact {
    tavroapi::ethernet_port::Position position;
    std::string (*tell)(const EthernetDevice& device);
};

// Every narrow text that is told; all others stay empty.
std::span<const PortFact> PortFacts();

// Fills in all that is known of the port.
void TellPort(const EthernetDevice& device, tavroapi::EthernetPortInfo& info);

}  // namespace tavrolinux
