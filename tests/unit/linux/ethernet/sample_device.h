#pragma once

#include "linux/ethernet/device.h"

namespace tavrolinux {

// A port of an adapter that has everything, as its kernel would tell of it.
inline EthernetDevice SampleDevice() {
    EthernetDevice device;
    device.adapterName = "Example 10G Adapter 0000:03:00";
    device.pci = PciPlace{"0000:03:00", 1, {}};
    device.link.index = 7;
    device.link.name = "port1";
    device.link.address = EthernetAddress{0x02, 0, 0x5E, 0, 0, 9};
    device.link.permanentAddress = EthernetAddress{0, 0, 0x5E, 0, 0x53, 1};
    device.link.mtu = 1500;
    device.link.smallestMtu = 68;
    device.link.largestMtu = 9710;
    device.link.isUp = true;
    device.link.hasCarrier = true;
    device.onBus =
        DeviceOnBus{"pci", "a2", "8", "8.0 GT/s", "msix", 17, 63, 4, 54.5, {"SN-0042", "PN-7"}};
    device.driver = DriverInformation{"sampledrv", "6.1.0", "8.30 0x8000", "1.2.3", "0000:03:00.1"};
    device.linkModes = LinkModes{true,
                                 10000,
                                 true,
                                 {{"Autoneg", true},
                                  {"Pause", true},
                                  {"TP", true},
                                  {"100baseT/Full", true},
                                  {"1000baseT/Full", true},
                                  {"2500baseT/Full", true},
                                  {"10000baseT/Full", true}}};
    device.pause = Pause{false, true, false, 31, 32};
    device.connector = std::uint8_t{0};
    device.isEnergyEfficient = false;
    device.features = {
        {"rx-checksum", {true, true, true}},         {"tx-checksum-ip-generic", {true, true, true}},
        {"tx-checksum-ipv4", {false, false, false}}, {"tx-checksum-ipv6", {false, false, false}},
        {"tx-tcp-segmentation", {true, true, true}}, {"tx-tcp6-segmentation", {false, false, true}},
        {"rx-gro-hw", {false, false, false}},        {"rx-lro", {false, false, true}},
        {"rx-hashing", {true, true, true}},
    };
    device.rings = Rings{{512, 4096}, {1024, 8192}};
    device.channels = Channels{{0, 0}, {0, 0}, {8, 12}};
    device.coalescing = Coalescing{true, 20};
    device.wakeUp = NamedBits{{"magic", false}, {"unicast", true}};
    device.timeStamping = {{"hardware-receive", true}, {"software-receive", true}};
    device.receiveQueues = 8;
    device.sendQueues = 9;
    return device;
}

}  // namespace tavrolinux
