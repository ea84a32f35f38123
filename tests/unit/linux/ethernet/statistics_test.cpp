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
    DeviceCounters device;
    device.multicastSent = 2;
    EXPECT_FALSE(CountersOf(SampleLinkCounters(), device, {}).contains("unicastFramesSent"));
    device.broadcastSent = 2000;
    // The frames went on while they were counted.
    EXPECT_EQ(CountersOf(SampleLinkCounters(), device, {}).at("unicastFramesSent"), 0U);
}

TEST(EthernetStatistics, CountFromTheirBaseline) {
    const NamedCounters before{{"framesSent", 10}, {"bytesSent", 100}};
    const NamedCounters now{{"framesSent", 15}, {"bytesSent", 100}, {"pauseFramesSent", 3}};
    EXPECT_THAT(
        CountedSince(before, now),
        Optional(NamedCounters{{"framesSent", 5}, {"bytesSent", 0}, {"pauseFramesSent", 3}}));
}

TEST(EthernetStatistics, DropABaselineThatOneOfThemIsBelow) {
    EXPECT_EQ(CountedSince({{"framesSent", 10}, {"bytesSent", 100}},
                           {{"framesSent", 15}, {"bytesSent", 99}}),
              std::nullopt);
}

}  // namespace
}  // namespace tavrolinux
