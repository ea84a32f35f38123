#include "linux/iscsi/send_targets.h"

#include <gtest/gtest.h>

#include <string_view>

namespace tavrolinux {
namespace {

using namespace std::string_view_literals;

auto TargetsOf(std::string_view text) {
    return ParseSendTargets({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

TEST(SendTargets, AreTargetsWithTheirPortals) {
    const auto targets = TargetsOf(
        "TargetName=iqn.b\0TargetAddress=192.0.2.1:3260,1\0TargetAddress=[2001:db8::1]:3261,2\0"
        "TargetName=iqn.a\0TargetAddress=a name:x\0\0"sv);
    ASSERT_TRUE(targets);
    ASSERT_EQ(targets->size(), 2U);
    const DiscoveredTarget& first = targets->front();
    EXPECT_EQ(first.name, "iqn.b");
    ASSERT_EQ(first.portals.size(), 2U);
    EXPECT_EQ(first.portals[0].portal.address, "192.0.2.1");
    EXPECT_EQ(first.portals[1].portal.port, 3261);
    EXPECT_EQ(first.portals[1].group, "2");
    EXPECT_EQ(targets->back().name, "iqn.a");
    EXPECT_TRUE(targets->back().portals.empty());
}

TEST(SendTargets, AreNothingElse) {
    EXPECT_TRUE(TargetsOf("") && TargetsOf("")->empty());
    EXPECT_FALSE(TargetsOf("TargetAddress=192.0.2.1:3260,1\0"sv));
    EXPECT_FALSE(TargetsOf("TargetName=iqn.a"sv)) << "no end";
    EXPECT_FALSE(TargetsOf("TargetName=iqn.a\0Other=1\0"sv));
    EXPECT_FALSE(TargetsOf("TargetName=iqn.a\0\0TargetName=iqn.b\0"sv));
}

TEST(SendTargets, AreReadOneBeyondTheMost) {
    std::string many;
    for (std::size_t target = 0; target < MostTargets + 10; ++target) {
        many += "TargetName=iqn.a"sv;
        many += '\0';
    }
    EXPECT_EQ(TargetsOf(many)->size(), MostTargets + 1);
    std::string portals = "TargetName=iqn.a";
    portals += '\0';
    for (std::size_t portal = 0; portal < MostPortals + 10; ++portal) {
        portals += "TargetAddress=192.0.2.1"sv;
        portals += '\0';
    }
    EXPECT_EQ(TargetsOf(portals)->front().portals.size(), MostPortals + 1);
}

}  // namespace
}  // namespace tavrolinux
