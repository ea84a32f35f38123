#include "linux/iscsi/portal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

using testing::Optional;

TEST(Portal, IsTheSameInWhateverWayItsAddressIsWritten) {
    EXPECT_TRUE(AreSame({"2001:db8::1", 3260}, {"2001:DB8:0:0::1", 3260}));
    EXPECT_TRUE(AreSame({"storage.example", 3260}, {"storage.example", 3260}));
    EXPECT_FALSE(AreSame({"192.0.2.1", 3260}, {"192.0.2.1", 3261}));
    EXPECT_FALSE(AreSame({"192.0.2.1", 3260}, {"192.0.2.2", 3260}));
    EXPECT_FALSE(AreSame({"one.example", 3260}, {"two.example", 3260}));
}

TEST(Portal, IsTheSameInBothFamilies) {
    EXPECT_TRUE(AreSame({"127.0.0.1", 3260}, {"::ffff:127.0.0.1", 3260}));
    EXPECT_FALSE(AreSame({"127.0.0.1", 3260}, {"::ffff:127.0.0.2", 3260}));
    EXPECT_FALSE(AreSame({"127.0.0.1", 3260}, {"::127.0.0.1", 3260}));
}

TEST(Portal, IsAtNoPlaceWithAnAddressThatStandsForNone) {
    for (const char* const text : {"0.0.0.0", "::", "0:0::0", "::ffff:0.0.0.0"}) {
        EXPECT_TRUE(IsNoPlace(text)) << text;
    }
    for (const char* const text : {"127.0.0.1", "::1", "::ffff:127.0.0.1", "", "x"}) {
        EXPECT_FALSE(IsNoPlace(text)) << text;
    }
}

TEST(Portal, HasAPortNumberOf16BitsAbove0) {
    EXPECT_THAT(PortFrom("1"), Optional(std::uint16_t{1}));
    EXPECT_THAT(PortFrom("65535"), Optional(std::uint16_t{65535}));
    for (const char* const text : {"", "0", "65536", "-1", "3260 ", "x"}) {
        EXPECT_EQ(PortFrom(text), std::nullopt) << text;
    }
}

TEST(Portal, IsWrittenWithItsPort) {
    EXPECT_EQ(TextOf(Portal{"192.0.2.1", 3260}), "192.0.2.1:3260");
    EXPECT_EQ(TextOf(Portal{"2001:db8::1", 3261}), "[2001:db8::1]:3261");
}

TEST(AnnouncedPortal, IsReadWithItsGroup) {
    const auto ipv4 = ParseAnnouncedPortal("192.0.2.1:3261,7");
    ASSERT_TRUE(ipv4);
    EXPECT_EQ(ipv4->portal.address, "192.0.2.1");
    EXPECT_EQ(ipv4->portal.port, 3261);
    EXPECT_EQ(ipv4->group, "7");
    const auto ipv6 = ParseAnnouncedPortal("[2001:db8::1]:3261,1");
    ASSERT_TRUE(ipv6);
    EXPECT_EQ(ipv6->portal.address, "2001:db8::1");
    EXPECT_EQ(ipv6->portal.port, 3261);
}

TEST(AnnouncedPortal, NeedsNeitherPortNorGroup) {
    const auto bare = ParseAnnouncedPortal("[2001:db8::1]");
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->portal.address, "2001:db8::1");
    EXPECT_EQ(bare->portal.port, 3260);
    EXPECT_EQ(bare->group, "");
    EXPECT_EQ(ParseAnnouncedPortal("storage.example,2")->portal.address, "storage.example");
}

TEST(AnnouncedPortal, HasANumberAsItsGroup) {
    EXPECT_EQ(ParseAnnouncedPortal("192.0.2.1:3260,65535")->group, "65535");
    for (const char* const group : {"1;rm", "65536", "-1", "", "x"}) {
        EXPECT_EQ(ParseAnnouncedPortal(std::string("192.0.2.1:3260,") + group)->group, "") << group;
    }
}

TEST(AnnouncedPortal, IsNothingElse) {
    for (const char* const text :
         {"", ",1", ":3260,1", "192.0.2.1:,1", "192.0.2.1:x", "[2001:db8::1", "[::1]x", "[]:1",
          "192.0.2.1\x1B[2J:3260,1", "192.0.2.1:99999"}) {
        EXPECT_FALSE(ParseAnnouncedPortal(text)) << text;
    }
}

}  // namespace
}  // namespace tavrolinux
