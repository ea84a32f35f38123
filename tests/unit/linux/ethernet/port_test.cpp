#include "linux/ethernet/port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "unit/linux/ethernet/sample_device.h"

namespace tavrolinux {
namespace {

namespace ethernet_port = tavroapi::ethernet_port;

tavroapi::EthernetPortInfo Told(const EthernetDevice& device) {
    tavroapi::EthernetPortInfo info;
    TellPort(device, info);
    return info;
}

std::string Told(const EthernetDevice& device, ethernet_port::Position position) {
    return Told(device).NarrowText(position);
}

// The number of a position is what programs count by, so it stands here as a number.
TEST(EthernetPort, EveryPositionTellsItsOwnFact) {
    const std::map<std::size_t, std::string> expected{
        {0, "Example 10G Adapter 0000:03:00"},
        {1, "SN-0042"},
        {2, "PN-7"},
        {6, "02-00-5E-00-00-09"},
        {7, "00-00-5E-00-53-01"},
        {9, "Up"},
        {10, "10 Gbps"},
        {12, "10 Gbps"},
        {13, "sampledrv"},
        {14, "1.2.3"},
        {16, "8.30 0x8000"},
        {22, "6.1.0"},
        {23, "1514"},
        {26, "0000:03:00.1"},
        {29, "02-00-5E-00-00-09"},
        {31, "a2"},
        {32, "Rx Enabled"},
    };
    auto info = Told(SampleDevice());
    for (std::size_t number = 0; number <= ethernet_port::FlowControl; ++number) {
        if (number != ethernet_port::DeviceName) {
            const auto fact = expected.find(number);
            EXPECT_EQ(info.NarrowText(number), fact == expected.end() ? "" : fact->second)
                << number;
        }
    }
    EXPECT_EQ(info.wideText27, L"port1");
    EXPECT_EQ(PortFacts().size(), expected.size());
}

TEST(EthernetPort, TellsNothingOfWhatIsUnknown) {
    auto info = Told(EthernetDevice{});
    const std::map<std::size_t, std::string> known{
        {9, "Down"}, {10, "None"}, {23, "14"}, {29, "Not Present"}, {32, "NA"}};
    for (std::size_t number = 0; number <= ethernet_port::FlowControl; ++number) {
        if (number != ethernet_port::DeviceName) {
            const auto fact = known.find(number);
            EXPECT_EQ(info.NarrowText(number), fact == known.end() ? "" : fact->second) << number;
        }
    }
}

TEST(EthernetPort, ALinkWantsCarrierOnAnInterfaceThatIsUp) {
    EthernetDevice device = SampleDevice();
    device.link.isUp = false;
    EXPECT_EQ(Told(device, ethernet_port::LinkState), "Down");
    EXPECT_EQ(Told(device, ethernet_port::LinkSpeed), "None");
    device = SampleDevice();
    device.link.hasCarrier = false;
    EXPECT_EQ(Told(device, ethernet_port::LinkState), "Down");
    EXPECT_EQ(Told(device, ethernet_port::LinkSpeed), "None");
}

TEST(EthernetPort, ASpeedThatTheDriverDoesNotTellIsUnknown) {
    EthernetDevice device = SampleDevice();
    device.linkModes->speed.reset();
    EXPECT_EQ(Told(device, ethernet_port::LinkSpeed), "Unknown");
    device.linkModes.reset();
    EXPECT_EQ(Told(device, ethernet_port::LinkSpeed), "Unknown");
    EXPECT_EQ(Told(device, ethernet_port::MaximumLinkSpeed), "");
}

TEST(EthernetPort, TheHighestModeCountsThoughItIsNotOffered) {
    EthernetDevice device = SampleDevice();
    device.linkModes->modes["25000baseCR/Full"] = false;
    EXPECT_EQ(Told(device, ethernet_port::MaximumLinkSpeed), "25 Gbps");
}

TEST(EthernetPort, AnAddressIsAssignedWhereItIsNotTheDevicesOwn) {
    Link link = SampleDevice().link;
    EXPECT_EQ(AssignedAddressOf(link), link.address);
    link.address = link.permanentAddress;
    EXPECT_EQ(AssignedAddressOf(link), std::nullopt);
    // Without an own address the bits of the address say it.
    link.permanentAddress.reset();
    EXPECT_EQ(AssignedAddressOf(link), std::nullopt);
    link.address = EthernetAddress{0x52, 0x54, 0, 0, 0, 1};
    EXPECT_EQ(AssignedAddressOf(link), link.address);
}

TEST(EthernetPort, FlowControlIsToldInTheWordsOfItsSetting) {
    EXPECT_EQ(FlowControlText(Pause{}), "Disabled");
    EXPECT_EQ(FlowControlText(Pause{false, true, false, {}, {}}), "Rx Enabled");
    EXPECT_EQ(FlowControlText(Pause{false, false, true, {}, {}}), "Tx Enabled");
    EXPECT_EQ(FlowControlText(Pause{false, true, true, {}, {}}), "Rx & Tx Enabled");
    EXPECT_EQ(FlowControlText(Pause{true, true, true, {}, {}}), "Auto Negotiation");
}

}  // namespace
}  // namespace tavrolinux
