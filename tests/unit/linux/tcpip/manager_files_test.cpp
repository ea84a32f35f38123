#include "linux/tcpip/manager_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NetworkManagerState, SaysWhetherTheDeviceIsManaged) {
    EXPECT_TRUE(IsOwnedByNetworkManager("[device]\nmanaged=true\n"));
    EXPECT_TRUE(IsOwnedByNetworkManager("# made by a program\n[device]\r\n managed = true \r\n"));
    EXPECT_TRUE(IsOwnedByNetworkManager(
        "[device]\nconnection-uuid=7a1c8ba0-93a1-4b07-b39f-2ea1a3a4a1c0\n"));
    EXPECT_FALSE(IsOwnedByNetworkManager("[device]\nmanaged=false\n"));
    EXPECT_FALSE(IsOwnedByNetworkManager(
        "[device]\nmanaged=false\nconnection-uuid=7a1c8ba0-93a1-4b07-b39f-2ea1a3a4a1c0\n"));
    EXPECT_FALSE(IsOwnedByNetworkManager("[device]\nconnection-uuid=\n"));
}

TEST(NetworkManagerState, SaysNothingInAnotherSectionOrAnotherText) {
    for (const char* text :
         {"", "managed=true\n", "[device2]\nmanaged=true\n", "[device]\n[dhcp]\nmanaged=true\n",
          "[device]\nmanaged\n", "[device", "[device]\n=true\n", "[device]\nunmanaged=true\n"}) {
        EXPECT_FALSE(IsOwnedByNetworkManager(text)) << text;
    }
}

TEST(NetworkdState, IsThatOfALinkThatIsNotLeftAlone) {
    for (const char* state : {"pending", "initialized", "configuring", "configured", "failed"}) {
        const std::string text =
            "# This is private data. Do not parse.\nADMIN_STATE=" + std::string(state) +
            "\nOPER_STATE=routable\n";
        EXPECT_TRUE(IsOwnedByNetworkd(text)) << state;
    }
    for (const char* text :
         {"ADMIN_STATE=unmanaged\nOPER_STATE=routable\n", "ADMIN_STATE=linger\n", "ADMIN_STATE=\n",
          "OPER_STATE=configured\n", "ADMIN_STATE", "", "\n"}) {
        EXPECT_FALSE(IsOwnedByNetworkd(text)) << text;
    }
}

TEST(IfupdownFile, HasMethodsMappingsAndSources) {
    const IfupdownFile file = ParseIfupdownFile(
        "# interfaces(5)\n"
        "source /etc/network/interfaces.d/*\n"
        "source-directory more\n"
        "\n"
        "auto lo eth0\n"
        "iface lo inet loopback\n"
        "allow-hotplug /eth*=office eth1=home\n"
        "\tiface eth0 inet static\n"
        "    address 192.0.2.1/24\n"
        "  # iface eth9 inet static\n"
        "iface \\\n"
        "  eth1 inet6 \\\n"
        "manual\r\n"
        "iface eth2 inherits eth0\n"
        "iface eth3 can static\n"
        "iface\n"
        "no-auto-down eth0=not\n");
    std::vector<std::string> methods;
    for (const auto& [interface, method] : file.methods) {
        methods.push_back(interface + ' ' + method);
    }
    EXPECT_THAT(methods,
                ElementsAre("lo loopback", "eth0 static", "eth1 manual", "eth2 ", "eth3 "));
    std::vector<std::string> mappings;
    for (const auto& [pattern, interface] : file.mappings) {
        mappings.push_back(pattern + " -> " + interface);
    }
    EXPECT_THAT(mappings, ElementsAre("eth* -> office", "eth1 -> home"));
    ASSERT_EQ(file.sources.size(), 2U);
    EXPECT_EQ(file.sources[0].path, "/etc/network/interfaces.d/*");
    EXPECT_FALSE(file.sources[0].isFolder);
    EXPECT_EQ(file.sources[1].path, "more");
    EXPECT_TRUE(file.sources[1].isFolder);
}

TEST(IfupdownFile, MayEndAnywhere) {
    EXPECT_THAT(ParseIfupdownFile("").methods, IsEmpty());
    EXPECT_THAT(ParseIfupdownFile("\\").methods, IsEmpty());
    EXPECT_THAT(ParseIfupdownFile("iface eth0 inet").methods.at(0).method, "");
    EXPECT_EQ(ParseIfupdownFile("iface eth0 inet dhcp\\").methods.at(0).method, "dhcp");
}

TEST(IfupdownState, NamesTheLogicalInterface) {
    constexpr const char* State = "lo=lo\neth0=office\neth1=eth1 1\n=x\neth2=\neth0:1=alias\n";
    EXPECT_THAT(LogicalNames(State, "eth0"), ElementsAre("office"));
    EXPECT_THAT(LogicalNames(State, "eth1"), ElementsAre("eth1"));
    EXPECT_THAT(LogicalNames(State, "eth2"), IsEmpty());
    EXPECT_THAT(LogicalNames(State, "eth3"), IsEmpty());
    EXPECT_THAT(LogicalNames("", ""), IsEmpty());
}

}  // namespace
}  // namespace tavrolinux
