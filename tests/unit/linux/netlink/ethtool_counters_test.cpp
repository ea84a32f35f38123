#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "linux/netlink/ethtool_device.h"

namespace tavrolinux {
namespace {

struct Counter {
    int number;
    std::uint64_t count;
};

// A group as the kernel tells it: its number, that of the texts that name its counters, and each
// counter in an attribute of its own.
void PutGroup(Message& message, std::uint32_t group, const std::vector<Counter>& counters) {
    constexpr std::uint32_t Texts = 17;
    message.Nest(ETHTOOL_A_STATS_GRP | NLA_F_NESTED, [&] {
        message.PutNumber32(ETHTOOL_A_STATS_GRP_ID, group);
        message.PutNumber32(ETHTOOL_A_STATS_GRP_SS_ID, Texts);
        for (const Counter& counter : counters) {
            message.Nest(ETHTOOL_A_STATS_GRP_STAT | NLA_F_NESTED, [&] {
                message.Put(
                    counter.number,
                    std::bit_cast<std::array<std::uint8_t, sizeof counter.count>>(counter.count));
            });
        }
    });
}

DeviceCounters CountersIn(const Message& message) {
    DeviceCounters counters;
    ForEachAttribute(AttributesOf(*nlmsg_hdr(message.Get()), 0),
                     [&counters](int type, const nlattr& attribute) {
                         EXPECT_EQ(type, ETHTOOL_A_STATS_GRP);
                         TakeCounterGroup(attribute, counters);
                     });
    return counters;
}

// The numbers are those of the kernel's interface, which never change.
TEST(DeviceCounters, AreTakenFromTheirGroups) {
    constexpr std::uint32_t Mac = 1;
    constexpr std::uint32_t RemoteMonitoring = 3;
    constexpr std::uint64_t Large = 0xFEDCBA9876543210U;
    Message message(0, 0);
    PutGroup(message, Mac,
             {{0, 900},     // frames sent
              {1, 101},     // single collisions
              {4, 102},     // wrong checksums
              {5, 103},     // wrong alignments
              {7, 104},     // deferred frames
              {8, 105},     // late collisions
              {9, 106},     // excessive collisions
              {14, Large},  // multicast frames sent
              {15, 108},    // broadcast frames sent
              {17, 109},    // multicast frames received
              {18, 110},    // broadcast frames received
              {21, 111}});  // frames that are too long
    PutGroup(message, RemoteMonitoring, {{0, 201}, {1, 202}, {2, 203}, {3, 204}});
    const DeviceCounters counters = CountersIn(message);
    EXPECT_EQ(counters.singleCollisions, 101U);
    EXPECT_EQ(counters.checksumErrors, 102U);
    EXPECT_EQ(counters.alignmentErrors, 103U);
    EXPECT_EQ(counters.deferred, 104U);
    EXPECT_EQ(counters.lateCollisions, 105U);
    EXPECT_EQ(counters.excessiveCollisions, 106U);
    EXPECT_EQ(counters.multicastSent, Large);
    EXPECT_EQ(counters.broadcastSent, 108U);
    EXPECT_EQ(counters.multicastReceived, 109U);
    EXPECT_EQ(counters.broadcastReceived, 110U);
    EXPECT_EQ(counters.tooLong, 111U);
    EXPECT_EQ(counters.undersized, 201U);
    EXPECT_EQ(counters.oversized, 202U);
    EXPECT_EQ(counters.fragments, 203U);
    EXPECT_EQ(counters.jabbers, 204U);
}

TEST(DeviceCounters, ThatAreNotToldAreNotCounted) {
    Message message(0, 0);
    PutGroup(message, 1, {{1, 0}});
    const DeviceCounters counters = CountersIn(message);
    EXPECT_EQ(counters.singleCollisions, 0U);
    EXPECT_EQ(counters.checksumErrors, std::nullopt);
    EXPECT_EQ(counters.undersized, std::nullopt);
}

TEST(DeviceCounters, OfOtherGroupsAreLeftOut) {
    Message message(0, 0);
    PutGroup(message, 0, {{0, 1}, {1, 2}});
    PutGroup(message, 2, {{0, 1}, {1, 2}});
    PutGroup(message, 99, {{0, 1}, {1, 2}});
    const DeviceCounters counters = CountersIn(message);
    EXPECT_EQ(counters.singleCollisions, std::nullopt);
    EXPECT_EQ(counters.undersized, std::nullopt);
    EXPECT_EQ(counters.oversized, std::nullopt);
}

}  // namespace
}  // namespace tavrolinux
