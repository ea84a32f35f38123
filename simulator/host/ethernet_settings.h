#pragma once

#include <string>

#include "simulator/host/member.h"

namespace tavrosim {

// The speed setting of a function that leaves the choice to its port.
inline constexpr const char* FastestSpeed = "Auto Negotiation";

// The values of the adapter settings of an Ethernet function. "NA" is a setting that the adapter
// does not have.
struct EthernetSettings {
    std::string speed = FastestSpeed;
    std::string flowControl = "Rx & Tx Enabled";
    std::string priorityAndVlan = "Priority & VLAN Enabled";
    std::string interruptModeration = "Enabled";
    std::string checksumOffloadIPv4 = "Rx & Tx Enabled";
    std::string checksumOffloadIPv6 = "Rx & Tx Enabled";
    std::string locallyAdministeredAddress = "Not Present";
    std::string receiveSideScaling = "Enabled";
    std::string jumboPacket = "1514";
    std::string receiveSideScalingQueues = "4";
    std::string receiveBuffers = "512";
    std::string transmitBuffers = "1024";
    std::string largeSendOffloadIPv4 = "Enabled";
    std::string largeSendOffloadIPv6 = "Enabled";
    std::string receiveSegmentCoalescing = "Disabled";
    std::string singleRootVirtualization = "Disabled";
    std::string wakeOnMagicPacket = "Disabled";
    std::string virtualFunctions = "32";
    std::string interruptMode = "MSI-X";
    std::string interruptVectors = "17";
    std::string busType = "PCI Express";
    std::string busWidth = "x8";
    std::string busSpeed = "5.0 GT/s";
    std::string receiveQueues = "8";
    std::string transmitQueues = "8";
    std::string multicastFilters = "64";
    std::string energyEfficientEthernet = "NA";
    std::string timeStamping = "NA";
    std::string networkBoot = "Disabled";
    std::string connector = "SFP+";
    std::string temperature = "NA";

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"speed", &EthernetSettings::speed},
            Member{"flowControl", &EthernetSettings::flowControl},
            Member{"priorityAndVlan", &EthernetSettings::priorityAndVlan},
            Member{"interruptModeration", &EthernetSettings::interruptModeration},
            Member{"checksumOffloadIPv4", &EthernetSettings::checksumOffloadIPv4},
            Member{"checksumOffloadIPv6", &EthernetSettings::checksumOffloadIPv6},
            Member{"locallyAdministeredAddress", &EthernetSettings::locallyAdministeredAddress},
            Member{"receiveSideScaling", &EthernetSettings::receiveSideScaling},
            Member{"jumboPacket", &EthernetSettings::jumboPacket},
            Member{"receiveSideScalingQueues", &EthernetSettings::receiveSideScalingQueues},
            Member{"receiveBuffers", &EthernetSettings::receiveBuffers},
            Member{"transmitBuffers", &EthernetSettings::transmitBuffers},
            Member{"largeSendOffloadIPv4", &EthernetSettings::largeSendOffloadIPv4},
            Member{"largeSendOffloadIPv6", &EthernetSettings::largeSendOffloadIPv6},
            Member{"receiveSegmentCoalescing", &EthernetSettings::receiveSegmentCoalescing},
            Member{"singleRootVirtualization", &EthernetSettings::singleRootVirtualization},
            Member{"wakeOnMagicPacket", &EthernetSettings::wakeOnMagicPacket},
            Member{"virtualFunctions", &EthernetSettings::virtualFunctions},
            Member{"interruptMode", &EthernetSettings::interruptMode},
            Member{"interruptVectors", &EthernetSettings::interruptVectors},
            Member{"busType", &EthernetSettings::busType},
            Member{"busWidth", &EthernetSettings::busWidth},
            Member{"busSpeed", &EthernetSettings::busSpeed},
            Member{"receiveQueues", &EthernetSettings::receiveQueues},
            Member{"transmitQueues", &EthernetSettings::transmitQueues},
            Member{"multicastFilters", &EthernetSettings::multicastFilters},
            Member{"energyEfficientEthernet", &EthernetSettings::energyEfficientEthernet},
            Member{"timeStamping", &EthernetSettings::timeStamping},
            Member{"networkBoot", &EthernetSettings::networkBoot},
            Member{"connector", &EthernetSettings::connector},
            Member{"temperature", &EthernetSettings::temperature});
    }
};

}  // namespace tavrosim
