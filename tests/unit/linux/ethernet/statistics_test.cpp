#include "linux/ethernet/statistics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace tavrolinux {
namespace {

using testing::Optional;
using Shown = std::map<std::size_t, std::string>;

LinkCounters SampleLinkCounters() {
    LinkCounters counters;
    counters.packetsReceived = 1001;
    counters.packetsSent = 1002;
    counters.bytesReceived = 1003;
    counters.bytesSent = 1004;
    counters.receiveErrors = 1005;
    counters.sendErrors = 1006;
    counters.receivedDropped = 1007;
    counters.sentDropped = 1008;
    counters.multicastReceived = 1009;
    counters.checksumErrors = 1010;
    counters.alignmentErrors = 1011;
    counters.missed = 1012;
    counters.aborted = 1013;
    counters.windowErrors = 1014;
    return counters;
}

// What is shown at each position; those with no text are left out.
Shown ShownOf(const NamedCounters& counters) {
    tavroapi::EthernetPortStatistics record;
    TellCounters(counters, record);
    Shown shown;
    for (std::size_t number = 0; number < record.texts.size(); ++number) {
        if (!record.texts.at(number).empty()) {
            shown[number] = record.texts.at(number);
        }
    }
    return shown;
}

// Positions are numbers here, since programs count by these.
TEST(EthernetStatistics, OfAPlainInterfaceAreTheStandardCounters) {
    const Shown expected{
        {0, "1002"},  {1, "1001"},  {2, "1005"},  {3, "1006"},  {4, "1008"},
        {14, "1009"}, {17, "1013"}, {18, "1011"}, {20, "1003"}, {21, "1004"},
        {22, "1010"}, {27, "1012"}, {28, "1014"}, {32, "1007"},
    };
    EXPECT_EQ(ShownOf(CountersOf(SampleLinkCounters(), {}, {})), expected);
}

TEST(EthernetStatistics, OfADeviceThatCountsByTheStandardsAreComplete) {
    DeviceCounters device;
    device.singleCollisions = 1;
    device.checksumErrors = 2;
    device.alignmentErrors = 3;
    device.deferred = 4;
    device.lateCollisions = 5;
    device.excessiveCollisions = 6;
    device.multicastSent = 7;
    device.multicastReceived = 8;
    device.broadcastSent = 9;
    device.broadcastReceived = 10;
    device.tooLong = 11;
    device.undersized = 12;
    device.fragments = 13;
    device.jabbers = 14;
    const Shown expected{
        {0, "1002"},  {1, "1001"},  {2, "1005"}, {3, "1006"},  {4, "1008"}, {6, "986"}, {8, "7"},
        {10, "9"},    {12, "983"},  {14, "8"},   {16, "10"},   {17, "6"},   {18, "3"},  {19, "4"},
        {20, "1003"}, {21, "1004"}, {22, "2"},   {23, "1"},    {24, "13"},  {25, "14"}, {26, "11"},
        {27, "1012"}, {28, "5"},    {29, "12"},  {32, "1007"}, {33, "21"},  {34, "20"},
    };
    EXPECT_EQ(ShownOf(CountersOf(SampleLinkCounters(), device, Pause{false, true, true, 20, 21})),
              expected);
    device.oversized = 15;
    EXPECT_EQ(ShownOf(CountersOf({}, device, {})).at(26), "15");
}

TEST(EthernetStatistics, UnicastFramesAreKnownWhereAllOthersAre) {
    constexpr std::size_t UnicastSent = 6;
    DeviceCounters device;
    device.multicastSent = 2;
    EXPECT_FALSE(ShownOf(CountersOf(SampleLinkCounters(), device, {})).contains(UnicastSent));
    device.broadcastSent = 2000;
    // The frames went on while they were counted.
    EXPECT_EQ(ShownOf(CountersOf(SampleLinkCounters(), device, {})).at(UnicastSent), "0");
}

NamedCounters CountersSent(std::uint64_t all, std::uint64_t multicast, std::uint64_t broadcast) {
    LinkCounters link;
    link.packetsSent = all;
    DeviceCounters device;
    device.multicastSent = multicast;
    device.broadcastSent = broadcast;
    return CountersOf(link, device, {});
}

// What is counted later than all frames can make their difference fall.
TEST(EthernetStatistics, UnicastFramesThatFallAreNoneSinceTheReset) {
    const auto before = CountersSent(100, 20, 30);
    const auto since = CountedSince(before, CountersSent(101, 25, 30));
    ASSERT_TRUE(since.has_value());
    EXPECT_EQ(ShownOf(*since).at(6), "0");
    EXPECT_EQ(ShownOf(*since).at(8), "5");
    EXPECT_EQ(ShownOf(CountedSince(before, CountersSent(120, 25, 31)).value()).at(6), "14");
}

TEST(EthernetStatistics, CountFromTheirBaseline) {
    const NamedCounters before{{"a", 10}, {"b", 100}};
    EXPECT_THAT(CountedSince(before, {{"a", 15}, {"b", 100}}),
                Optional(NamedCounters{{"a", 5}, {"b", 0}}));
}

TEST(EthernetStatistics, DropABaselineThatOneOfThemIsBelow) {
    EXPECT_EQ(CountedSince({{"a", 10}, {"b", 100}}, {{"a", 15}, {"b", 99}}), std::nullopt);
}

// A device may not be readable for a moment, at the reset or later.
TEST(EthernetStatistics, AreComparedWithTheSameSourceAlone) {
    constexpr std::size_t MulticastReceived = 14;
    constexpr std::size_t ShortFrames = 29;
    LinkCounters link;
    link.multicastReceived = 4;
    DeviceCounters device;
    device.multicastReceived = 1000;
    device.undersized = 50;
    const NamedCounters whole = CountersOf(link, device, {});
    const NamedCounters withoutDevice = CountersOf(link, {}, {});
    link.multicastReceived = 6;
    device.multicastReceived = 1007;
    device.undersized = 51;
    const NamedCounters later = CountersOf(link, device, {});
    const NamedCounters laterWithoutDevice = CountersOf(link, {}, {});

    const auto shownSince = [](const NamedCounters& before, const NamedCounters& now) {
        return ShownOf(CountedSince(before, now).value());
    };
    EXPECT_EQ(shownSince(whole, later).at(MulticastReceived), "7");
    EXPECT_EQ(shownSince(whole, later).at(ShortFrames), "1");
    EXPECT_EQ(shownSince(whole, laterWithoutDevice).at(MulticastReceived), "2");
    EXPECT_FALSE(shownSince(whole, laterWithoutDevice).contains(ShortFrames));
    EXPECT_EQ(shownSince(withoutDevice, later).at(MulticastReceived), "2");
    EXPECT_FALSE(shownSince(withoutDevice, later).contains(ShortFrames));
}

}  // namespace
}  // namespace tavrolinux
