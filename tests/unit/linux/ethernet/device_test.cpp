#include "linux/ethernet/device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavrolinux_test::Tree;

// A resource of read-only keywords, and the end tag.
const std::string Vpd =
    std::string("\x90\x0E\x00", 3) + "SN\x04" + "S-17" + "PN\x04" + "P-23" + "\x78";

Interface PciInterface(const Tree& tree) {
    tree.File("sys/devices/pci0000:00/0000:03:00.0/revision", "0xa2\n");
    tree.File("sys/devices/pci0000:00/0000:03:00.0/vpd", Vpd);
    tree.Link("sys/class/net/eth0/device", "../../../devices/pci0000:00/0000:03:00.0");
    Interface interface;
    interface.folder = tree.Placed("sys/class/net/eth0");
    interface.pci = PciPlace{"0000:03:00", 0, tree.Placed("sys/devices/pci0000:00/0000:03:00.0")};
    return interface;
}

// Settings are read many times when one is changed; their device is asked for nothing slow.
TEST(DeviceOnBus, TellsProductDataWhereItIsAskedForAlone) {
    const Tree tree;
    const Interface interface = PciInterface(tree);
    auto device = ReadDeviceOnBus(interface);
    ASSERT_TRUE(device.has_value());
    EXPECT_EQ(device->revision, "a2");
    EXPECT_EQ(device->product.serialNumber, "");
    AddProductData(interface, *device);
    EXPECT_EQ(device->product.serialNumber, "S-17");
    EXPECT_EQ(device->product.partNumber, "P-23");
}

TEST(DeviceOnBus, IsNoneWhereTheInterfaceHasNoDevice) {
    const Tree tree;
    Interface interface;
    EXPECT_FALSE(ReadDeviceOnBus(interface).has_value());
    tree.Directory("sys/class/net/veth0");
    interface.folder = tree.Placed("sys/class/net/veth0");
    EXPECT_FALSE(ReadDeviceOnBus(interface).has_value());
}

}  // namespace
}  // namespace tavrolinux
