#include "linux/iscsi/icmp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

using testing::ElementsAre;
using testing::Optional;
using Bytes = std::vector<std::uint8_t>;

TEST(EchoRequest, IsMarkedAndHasItsSize) {
    // The checksum makes the sum of all words 0xFFFF: 0x0800 + 0x1234 + 0x0001 + 0x0809 = 0x223E.
    EXPECT_THAT(EchoRequest(Family::IPv4, {0x1234, 1}, 2),
                ElementsAre(8, 0, 0xDD, 0xC1, 0x12, 0x34, 0, 1, 8, 9));
    EXPECT_THAT(EchoRequest(Family::IPv6, {0x1234, 0x0102}, 0),
                ElementsAre(128, 0, 0, 0, 0x12, 0x34, 1, 2));
}

TEST(EchoRequest, OfAnOddSizeIsSummedWithAZero) {
    // 0x0800 + 0x0001 + 0x0002 + 0x0800 = 0x1003
    EXPECT_THAT(EchoRequest(Family::IPv4, {1, 2}, 1), ElementsAre(8, 0, 0xEF, 0xFC, 0, 1, 0, 2, 8));
}

TEST(EchoReply, IsToldByItsMark) {
    EXPECT_THAT(EchoReplyTo(Family::IPv4, Bytes{0, 0, 9, 9, 0x12, 0x34, 1, 2}),
                Optional(EchoMark{0x1234, 0x0102}));
    EXPECT_THAT(EchoReplyTo(Family::IPv6, Bytes{129, 0, 9, 9, 0x12, 0x34, 1, 2, 7}),
                Optional(EchoMark{0x1234, 0x0102}));
}

TEST(EchoReply, IsNoOtherPacket) {
    EXPECT_EQ(EchoReplyTo(Family::IPv4, Bytes{8, 0, 9, 9, 0x12, 0x34, 1, 2}), std::nullopt);
    EXPECT_EQ(EchoReplyTo(Family::IPv4, Bytes{0, 1, 9, 9, 0x12, 0x34, 1, 2}), std::nullopt);
    EXPECT_EQ(EchoReplyTo(Family::IPv6, Bytes{0, 0, 9, 9, 0x12, 0x34, 1, 2}), std::nullopt);
    EXPECT_EQ(EchoReplyTo(Family::IPv4, Bytes{0, 0, 9, 9, 0x12, 0x34, 1}), std::nullopt);
}

TEST(EchoReply, BringsBackWhatWasSent) {
    const Bytes request = EchoRequest(Family::IPv4, {1, 2}, 3);
    EXPECT_TRUE(BringsBack(Bytes{0, 0, 9, 9, 0, 1, 0, 2, 8, 9, 10}, request));
    EXPECT_FALSE(BringsBack(Bytes{0, 0, 9, 9, 0, 1, 0, 2, 8, 9, 11}, request));
    EXPECT_FALSE(BringsBack(Bytes{0, 0, 9, 9, 0, 1, 0, 2, 8, 9}, request));
    EXPECT_FALSE(BringsBack(Bytes{0, 0, 9, 9, 0, 1, 0, 2, 8, 9, 10, 11}, request));
    EXPECT_FALSE(BringsBack(Bytes{0, 0, 9, 9}, request));
}

TEST(IPv4Header, IsAsLongAsItSays) {
    Bytes packet(28);
    packet[0] = 0x45;
    EXPECT_EQ(WithoutIPv4Header(packet).size(), 8U);
    packet[0] = 0x46;
    EXPECT_EQ(WithoutIPv4Header(packet).size(), 4U);
    packet[0] = 0x48;
    EXPECT_EQ(WithoutIPv4Header(packet).size(), 0U);
    packet[0] = 0x65;
    EXPECT_EQ(WithoutIPv4Header(packet).size(), 0U);
    EXPECT_EQ(WithoutIPv4Header({}).size(), 0U);
}

}  // namespace
}  // namespace tavrolinux
