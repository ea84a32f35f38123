#include "linux/ethernet/settings_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "unit/linux/ethernet/sample_device.h"

namespace tavrolinux {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ToldSetting Told(const EthernetDevice& device, std::size_t number) {
    return SettingTable()[number].tell(device);
}

std::string Value(const EthernetDevice& device, std::size_t number) {
    return Told(device, number).value;
}

// The texts of a setting's choices by their keys, which count from 1.
std::vector<std::string> Choices(const EthernetDevice& device, std::size_t number) {
    std::vector<std::string> texts;
    std::int32_t key = 0;
    for (const auto& [told, text] : Told(device, number).choices) {
        EXPECT_EQ(told, ++key) << number;
        texts.emplace_back(text.begin(), text.end());
    }
    return texts;
}

TEST(EthernetSettings, HaveARowForEveryNumber) {
    ASSERT_EQ(SettingTable().size(), tavroapi::AdapterSettings{}.settings.size());
    for (std::size_t number = 0; number < SettingTable().size(); ++number) {
        EXPECT_EQ(SettingTable()[number].number, number);
    }
}

// Programs count by the numbers.
TEST(EthernetSettings, OfADeviceThatHasEverything) {
    const char* const expected[] = {
        "02-00-5E-00-00-09",  // locally administered address
        "Auto Negotiation",   // speed
        "MSI-X",              // interrupt mode
        "17",                 // interrupt vectors
        "Rx & Tx Enabled",    // checksum offload of IPv4
        "Rx & Tx Enabled",    // and of IPv6
        "PCI Express",        // bus
        "x8",                 // its width
        "Rx Enabled",         // flow control
        "1514",               // jumbo packet
        "512",                // receive buffers
        "8.0 GT/s",           // speed of the bus
        "Enabled",            // large send offload of IPv4
        "Disabled",           // wake on magic packet
        "Enabled",            // interrupt moderation
        "NA",                 // priority and VLAN
        "Enabled",            // receive side scaling
        "8",                  // its queues
        "63",                 // virtual functions
        "Enabled",            // single root virtualization
        "NA",                 // multicast filters
        "Disabled",           // energy efficient Ethernet
        "Hardware",           // time stamping
        "Disabled",           // large send offload of IPv6
        "Disabled",           // receive segment coalescing
        "1024",               // transmit buffers
        "8",                  // receive queues
        "9",                  // transmit queues
        "NA",                 // network boot
        "Twisted Pair",       // connector
        "55 C",               // temperature
    };
    const EthernetDevice device = SampleDevice();
    for (std::size_t number = 0; number < std::size(expected); ++number) {
        EXPECT_EQ(Value(device, number), expected[number]) << number;
    }
}

TEST(EthernetSettings, OfADeviceThatTellsNothingAreNotThere) {
    EthernetDevice device;
    device.link.mtu = 1500;
    device.link.largestMtu = 1500;
    for (std::size_t number = 0; number < SettingTable().size(); ++number) {
        const ToldSetting told = Told(device, number);
        EXPECT_EQ(told.value, "NA") << number;
        EXPECT_THAT(told.choices, IsEmpty()) << number;
    }
}

TEST(EthernetSettings, TellWhatTheyCanBe) {
    const EthernetDevice device = SampleDevice();
    const auto directions = ElementsAre("Disabled", "Rx Enabled", "Tx Enabled", "Rx & Tx Enabled");
    const auto offAndOn = ElementsAre("Disabled", "Enabled");
    EXPECT_THAT(Choices(device, 1),
                ElementsAre("Auto Negotiation", "100 Mbps", "1 Gbps", "2.5 Gbps", "10 Gbps"));
    EXPECT_THAT(Choices(device, 4), directions);
    EXPECT_THAT(Choices(device, 5), directions);
    EXPECT_THAT(Choices(device, 8), ElementsAre("Disabled", "Rx Enabled", "Tx Enabled",
                                                "Rx & Tx Enabled", "Auto Negotiation"));
    for (const std::size_t number : {12U, 13U, 14U, 16U, 23U, 24U}) {
        EXPECT_THAT(Choices(device, number), offAndOn) << number;
    }
    EXPECT_THAT(Choices(device, 17), ElementsAre("1", "2", "4", "8", "12"));
    for (const std::size_t number : {0U, 2U, 3U, 6U, 7U, 11U, 18U, 19U, 21U, 22U, 26U, 29U, 30U}) {
        EXPECT_THAT(Told(device, number).choices, IsEmpty()) << number;
        EXPECT_EQ(SettingTable()[number].plan == nullptr, number != 0) << number;
    }
}

TEST(EthernetSettings, OfBuffersAreRangesOfThreeDifferentNumbers) {
    EthernetDevice device = SampleDevice();
    using Range = std::map<std::int32_t, std::wstring>;
    EXPECT_EQ(Told(device, 10).choices, (Range{{1, L"step"}, {2, L"min"}, {4096, L"max"}}));
    EXPECT_EQ(Told(device, 25).choices, (Range{{1, L"step"}, {2, L"min"}, {8192, L"max"}}));
    device.rings = Rings{{2, 2}, {1, 1}};
    EXPECT_THAT(Choices(device, 10), ElementsAre("1", "2"));
    EXPECT_EQ(Value(device, 25), "NA");
}

TEST(EthernetSettings, OfFramesAreThoseTheDeviceTakesAndThePresentOne) {
    EthernetDevice device = SampleDevice();
    EXPECT_THAT(Choices(device, 9), ElementsAre("1514", "4088", "9014"));
    device.link.mtu = 2000;
    EXPECT_THAT(Choices(device, 9), ElementsAre("1514", "2014", "4088", "9014"));
    EXPECT_EQ(Value(device, 9), "2014");
    device.link.largestMtu = 9000;
    EXPECT_THAT(Choices(device, 9), ElementsAre("1514", "2014", "4088", "9014"));
    device.link.largestMtu = 8999;
    EXPECT_THAT(Choices(device, 9), ElementsAre("1514", "2014", "4088"));
    device.link.largestMtu = 0;  // no bound is told
    EXPECT_THAT(Choices(device, 9), ElementsAre("1514", "2014", "4088", "9014"));
}

TEST(EthernetSettings, ThatAreFixedAreNotThere) {
    EthernetDevice device = SampleDevice();
    for (auto& [name, feature] : device.features) {
        feature.canChange = false;
    }
    for (const std::size_t number : {4U, 5U, 12U, 16U, 23U, 24U}) {
        EXPECT_EQ(Value(device, number), "NA") << number;
    }
    device.channels = Channels{{1, 1}, {1, 1}, {0, 0}};
    EXPECT_EQ(Value(device, 17), "NA");
    device.linkModes->modes = {{"1000baseT/Full", true}};
    EXPECT_EQ(Value(device, 1), "NA");
}

TEST(EthernetSettings, OfOneFixedDirectionOfferTheOther) {
    EthernetDevice device = SampleDevice();
    device.features["rx-checksum"].canChange = false;
    EXPECT_THAT(Choices(device, 4), ElementsAre("Rx Enabled", "Rx & Tx Enabled"));
    device.features["rx-checksum"].isActive = false;
    EXPECT_THAT(Choices(device, 4), ElementsAre("Disabled", "Tx Enabled"));
    EXPECT_EQ(Value(device, 4), "Tx Enabled");
}

TEST(EthernetSettings, OfProtocolsThatHaveFeaturesOfTheirOwn) {
    EthernetDevice device = SampleDevice();
    device.features["tx-checksum-ip-generic"] = {};
    device.features["tx-checksum-ipv4"] = {true, true, true};
    device.features["tx-checksum-ipv6"] = {false, false, true};
    EXPECT_EQ(Value(device, 4), "Rx & Tx Enabled");
    EXPECT_EQ(Value(device, 5), "Rx Enabled");
}

TEST(EthernetSettings, OfASpeedThatIsChosen) {
    EthernetDevice device = SampleDevice();
    for (auto& [name, isOffered] : device.linkModes->modes) {
        isOffered = !SpeedOfMode(name) || name == "1000baseT/Full";
    }
    EXPECT_EQ(Value(device, 1), "1 Gbps");
    device.linkModes->negotiates = false;
    device.linkModes->speed = 100;
    EXPECT_EQ(Value(device, 1), "100 Mbps");
}

// It could be chosen, but not found again.
TEST(EthernetSettings, OfTheOnlySpeedOfferNothing) {
    EthernetDevice device = SampleDevice();
    device.linkModes->modes = {{"Autoneg", true}, {"1000baseT/Full", true}};
    EXPECT_EQ(Value(device, 1), "NA");
    EXPECT_THAT(Choices(device, 1), IsEmpty());
    device.linkModes->modes["1000baseT/Half"] = true;
    EXPECT_EQ(Value(device, 1), "NA");
}

TEST(EthernetSettings, OfMoreQueuesThanThereCanBe) {
    EthernetDevice device = SampleDevice();
    constexpr std::uint32_t Most = 4294967295;
    device.channels = Channels{{0, 0}, {0, 0}, {1, Most}};
    EXPECT_EQ(Choices(device, 17).size(), 33U);  // the powers of two, and the largest number
}

TEST(EthernetSettings, OfQueuesThatOnlyReceive) {
    EthernetDevice device = SampleDevice();
    device.channels = Channels{{3, 6}, {2, 2}, {0, 0}};
    EXPECT_EQ(Value(device, 17), "3");
    EXPECT_THAT(Choices(device, 17), ElementsAre("1", "2", "3", "4", "6"));
}

TEST(EthernetSettings, OfInterruptsThatAreDelayedWithoutChoosing) {
    EthernetDevice device = SampleDevice();
    device.coalescing = Coalescing{false, 0};
    EXPECT_EQ(Value(device, 14), "Disabled");
    device.coalescing = Coalescing{{}, 30};
    EXPECT_EQ(Value(device, 14), "Enabled");
    device.coalescing = Coalescing{};
    EXPECT_EQ(Value(device, 14), "NA");
}

TEST(EthernetSettings, ThatThisProcessMayNotKnowAreEmpty) {
    EthernetDevice device = SampleDevice();
    device.wakeUp.reset();
    device.isWakeUpHidden = true;
    EXPECT_EQ(Value(device, 13), "");
    EXPECT_THAT(Told(device, 13).choices, IsEmpty());
}

}  // namespace
}  // namespace tavrolinux
