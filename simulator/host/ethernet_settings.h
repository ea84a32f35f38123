#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"

namespace tavrosim {

/// The values of the adapter settings of an Ethernet function. "NA" is a setting that the adapter
/// does not have.
struct EthernetSettings {
    std::string speed = "Auto Negotiation";
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

    static constexpr auto Members() {
        constexpr Presence Optional = Presence::Optional;
        return std::tuple{
            Member{"speed", &EthernetSettings::speed, Optional},
            Member{"flowControl", &EthernetSettings::flowControl, Optional},
            Member{"priorityAndVlan", &EthernetSettings::priorityAndVlan, Optional},
            Member{"interruptModeration", &EthernetSettings::interruptModeration, Optional},
            Member{"checksumOffloadIPv4", &EthernetSettings::checksumOffloadIPv4, Optional},
            Member{"checksumOffloadIPv6", &EthernetSettings::checksumOffloadIPv6, Optional},
            Member{"locallyAdministeredAddress", &EthernetSettings::locallyAdministeredAddress,
                   Optional},
            Member{"receiveSideScaling", &EthernetSettings::receiveSideScaling, Optional},
            Member{"jumboPacket", &EthernetSettings::jumboPacket, Optional},
            Member{"receiveSideScalingQueues", &EthernetSettings::receiveSideScalingQueues,
                   Optional},
            Member{"receiveBuffers", &EthernetSettings::receiveBuffers, Optional},
            Member{"transmitBuffers", &EthernetSettings::transmitBuffers, Optional},
            Member{"largeSendOffloadIPv4", &EthernetSettings::largeSendOffloadIPv4, Optional},
            Member{"largeSendOffloadIPv6", &EthernetSettings::largeSendOffloadIPv6, Optional},
            Member{"receiveSegmentCoalescing", &EthernetSettings::receiveSegmentCoalescing,
                   Optional},
            Member{"singleRootVirtualization", &EthernetSettings::singleRootVirtualization,
                   Optional},
            Member{"wakeOnMagicPacket", &EthernetSettings::wakeOnMagicPacket, Optional},
            Member{"virtualFunctions", &EthernetSettings::virtualFunctions, Optional},
            Member{"interruptMode", &EthernetSettings::interruptMode, Optional},
            Member{"interruptVectors", &EthernetSettings::interruptVectors, Optional},
            Member{"busType", &EthernetSettings::busType, Optional},
            Member{"busWidth", &EthernetSettings::busWidth, Optional},
            Member{"busSpeed", &EthernetSettings::busSpeed, Optional},
            Member{"receiveQueues", &EthernetSettings::receiveQueues, Optional},
            Member{"transmitQueues", &EthernetSettings::transmitQueues, Optional},
            Member{"multicastFilters", &EthernetSettings::multicastFilters, Optional},
            Member{"energyEfficientEthernet", &EthernetSettings::energyEfficientEthernet, Optional},
            Member{"timeStamping", &EthernetSettings::timeStamping, Optional},
            Member{"networkBoot", &EthernetSettings::networkBoot, Optional},
            Member{"connector", &EthernetSettings::connector, Optional},
            Member{"temperature", &EthernetSettings::temperature, Optional}};
    }
};

}  // namespace tavrosim
