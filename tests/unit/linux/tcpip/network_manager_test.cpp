#include "linux/tcpip/network_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavrolinux_test::Tree;
using testing::Eq;
using testing::Optional;

class NetworkManagers : public testing::Test {
  protected:
    std::optional<std::string> Owner(const char* name = "eth0") const {
        Interface interface;
        interface.index = 7;
        interface.name = name;
        return ManagerOf(tree.Roots(), interface);
    }

    Tree tree;
};

TEST_F(NetworkManagers, OwnNothingOnABareHost) {
    EXPECT_EQ(Owner(), std::nullopt);
}

TEST_F(NetworkManagers, OwnWhatNetworkManagerManages) {
    tree.File("run/NetworkManager/devices/8", "[device]\nmanaged=true\n");
    EXPECT_EQ(Owner(), std::nullopt);
    tree.File("run/NetworkManager/devices/7", "[device]\nmanaged=true\n");
    EXPECT_THAT(Owner(), Optional(Eq("NetworkManager")));
    tree.File("run/NetworkManager/devices/7", "[device]\nmanaged=false\n");
    EXPECT_EQ(Owner(), std::nullopt);
}

TEST_F(NetworkManagers, OwnWhatNetworkdConfigures) {
    tree.File("run/systemd/netif/links/7", "ADMIN_STATE=configured\nOPER_STATE=routable\n");
    EXPECT_THAT(Owner(), Optional(Eq("systemd-networkd")));
    tree.File("run/systemd/netif/links/7", "ADMIN_STATE=unmanaged\nOPER_STATE=routable\n");
    EXPECT_EQ(Owner(), std::nullopt);
}

TEST_F(NetworkManagers, OwnWhatIfupdownGivesAnAddress) {
    tree.File("etc/network/interfaces",
              "auto eth0 eth1\niface eth0 inet manual\niface eth0 inet6 auto\n"
              "iface eth1 inet manual\niface eth2 inet dhcp\n");
    EXPECT_THAT(Owner("eth0"), Optional(Eq("ifupdown")));
    EXPECT_EQ(Owner("eth1"), std::nullopt);
    EXPECT_THAT(Owner("eth2"), Optional(Eq("ifupdown")));
    EXPECT_EQ(Owner("eth3"), std::nullopt);
}

TEST_F(NetworkManagers, ReadTheFilesThatBelongToTheConfiguration) {
    tree.File("etc/network/interfaces",
              "source /etc/network/interfaces.d/*\nsource-directory folder\nsource absent\n"
              "source interfaces\n");
    tree.File("etc/network/interfaces.d/one", "iface eth0 inet static\nsource two\n");
    tree.File("etc/network/interfaces.d/two.conf", "iface eth1 inet static\nsource deep/three\n");
    tree.File("etc/network/interfaces.d/deep/three", "iface eth2 inet static\n");
    tree.File("etc/network/folder/right-one", "iface eth3 inet static\n");
    tree.File("etc/network/folder/right-one.dpkg-old", "iface eth4 inet static\n");
    for (const char* owned : {"eth0", "eth1", "eth2", "eth3"}) {
        EXPECT_THAT(Owner(owned), Optional(Eq("ifupdown"))) << owned;
    }
    EXPECT_EQ(Owner("eth4"), std::nullopt);
}

TEST_F(NetworkManagers, FollowMappingsToLogicalInterfaces) {
    tree.File("etc/network/interfaces",
              "allow-hotplug /eth*=office /usb*=loose\niface office inet dhcp\n"
              "iface loose inet manual\n");
    EXPECT_THAT(Owner("eth0"), Optional(Eq("ifupdown")));
    EXPECT_EQ(Owner("usb0"), std::nullopt);
    EXPECT_EQ(Owner("wlan0"), std::nullopt);
}

TEST_F(NetworkManagers, OwnWhatIfupdownBroughtUp) {
    tree.File("etc/network/interfaces", "iface home inet static\niface loose inet manual\n");
    tree.File("run/network/ifstate", "eth0=home\neth1=loose\neth2=eth2\n");
    EXPECT_THAT(Owner("eth0"), Optional(Eq("ifupdown")));
    EXPECT_EQ(Owner("eth1"), std::nullopt);
    // It is not described any more: nobody knows what it was given.
    EXPECT_THAT(Owner("eth2"), Optional(Eq("ifupdown")));
    EXPECT_EQ(Owner("eth3"), std::nullopt);
}

TEST_F(NetworkManagers, AreFoundInLongFiles) {
    std::string text;
    for (int number = 0; number < 5000; ++number) {
        text += "iface port" + std::to_string(number) + " inet static\n";
    }
    tree.File("etc/network/interfaces", text);
    EXPECT_THAT(Owner("port4999"), Optional(Eq("ifupdown")));
}

}  // namespace
}  // namespace tavrolinux
