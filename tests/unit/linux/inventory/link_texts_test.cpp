#include "linux/inventory/link_texts.h"

#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

TEST(LinkTexts, SpeedsAreToldInTheUnitThatSuitsThem) {
    EXPECT_EQ(SpeedText(10), "10 Mbps");
    EXPECT_EQ(SpeedText(100), "100 Mbps");
    EXPECT_EQ(SpeedText(1000), "1 Gbps");
    EXPECT_EQ(SpeedText(2500), "2.5 Gbps");
    EXPECT_EQ(SpeedText(400000), "400 Gbps");
}

TEST(LinkTexts, ALinkTakesAnInterfaceThatIsUpAndACarrier) {
    LinkModes modes;
    modes.speed = 10000;
    Link link;
    link.hasCarrier = true;
    EXPECT_EQ(LinkStateText(link), "Down");
    EXPECT_EQ(LinkSpeedText(link, modes), "None");
    link.isUp = true;
    EXPECT_EQ(LinkStateText(link), "Up");
    EXPECT_EQ(LinkSpeedText(link, modes), "10 Gbps");
    EXPECT_EQ(LinkSpeedText(link, std::nullopt), "Unknown");
    EXPECT_EQ(LinkSpeedText(link, LinkModes{}), "Unknown");
    link.hasCarrier = false;
    EXPECT_EQ(LinkStateText(link), "Down");
}

}  // namespace
}  // namespace tavrolinux
