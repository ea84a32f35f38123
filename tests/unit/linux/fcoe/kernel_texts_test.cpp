#include "linux/fcoe/kernel_texts.h"

#include <gtest/gtest.h>

#include "linux/inventory/fibre_channel_names.h"

namespace tavrolinux {
namespace {

TEST(KernelTexts, AreEmptyWhereTheKernelKnowsNothing) {
    for (const char* nothing : {"unknown", "Unknown", "unspecified", "(null)", ""}) {
        EXPECT_EQ(KnownText(nothing), "") << nothing;
        EXPECT_EQ(GigabitsText(nothing), "") << nothing;
        EXPECT_EQ(FcLinkText(nothing), "") << nothing;
        EXPECT_EQ(FcPortTypeText(nothing), "") << nothing;
    }
    EXPECT_EQ(KnownText("Class 3"), "Class 3");
}

TEST(KernelTexts, TellSpeedsAsListingsDo) {
    EXPECT_EQ(GigabitsText("10 Gbit"), "10 Gbps");
    EXPECT_EQ(GigabitsText("1 Gbit, 10 Gbit, 25 Gbit"), "1 Gbps, 10 Gbps, 25 Gbps");
    EXPECT_EQ(GigabitsText("Not Negotiated"), "");
}

TEST(KernelTexts, TellStatesAndTypesAsListingsDo) {
    EXPECT_EQ(FcLinkText("Online"), "Up");
    EXPECT_EQ(FcLinkText("Linkdown"), "Down");
    EXPECT_EQ(FcLinkText("Offline"), "Down");
    EXPECT_EQ(FcLinkText("Bypassed"), "Bypassed");
    EXPECT_EQ(FcPortTypeText("NPort (fabric via point-to-point)"), "VN_Port");
    EXPECT_EQ(FcPortTypeText("Point-To-Point (direct nport connection)"),
              "Point-To-Point (direct nport connection)");
    EXPECT_EQ(ScsiStateText("running"), "Online");
    EXPECT_EQ(ScsiStateText("offline"), "Offline");
    EXPECT_EQ(ScsiStateText("transport-offline"), "Offline");
    EXPECT_EQ(ScsiStateText("blocked"), "blocked");
    EXPECT_EQ(ScsiTypeText(0), "Disk");
    EXPECT_EQ(ScsiTypeText(1), "Tape Drive");
    EXPECT_EQ(ScsiTypeText(31), "Type 31");
    EXPECT_EQ(ScsiTypeText(std::nullopt), "");
}

TEST(KernelTexts, TellTypesAsDigitsWithoutGaps) {
    std::string told;
    std::string expected;
    for (int octet = 0; octet < 32; ++octet) {
        told += octet == 2 ? "0x01 " : octet == 31 ? "0xf0 " : "0x00 ";
        expected += octet == 2 ? "01" : octet == 31 ? "f0" : "00";
    }
    EXPECT_EQ(FcTypesText(told), expected);
    EXPECT_EQ(FcTypesText(told.substr(0, told.size() - 1)), expected);
    EXPECT_EQ(FcTypesText(told.substr(0, told.size() - 2)), "");
    EXPECT_EQ(FcTypesText(told.substr(5)), "");
    EXPECT_EQ(FcTypesText(told + "0x00 "), "");
    EXPECT_EQ(FcTypesText("0x0g" + told.substr(4)), "");
    EXPECT_EQ(FcTypesText("1x00" + told.substr(4)), "");
    EXPECT_EQ(FcTypesText("0x00," + told.substr(5)), "");
    EXPECT_EQ(FcTypesText(""), "");
}

TEST(KernelTexts, TellNumbersWithTheirDigits) {
    EXPECT_EQ(HexadecimalText(0xefc00, 6), "0EFC00");
    EXPECT_EQ(HexadecimalText(0xffffff, 6), "FFFFFF");
    EXPECT_EQ(HexadecimalText(0x1000000, 6), "");
    EXPECT_EQ(HexadecimalText(0, 6), "");
    EXPECT_EQ(HexadecimalText(std::nullopt, 6), "");
    EXPECT_EQ(LeadingDigits("2048 bytes"), "2048");
    EXPECT_EQ(LeadingDigits("2112"), "2112");
    EXPECT_EQ(LeadingDigits("bytes"), "");
}

TEST(Wwn, HasEightOctets) {
    EXPECT_EQ(WwnText(0x100002005e100004), "10:00:02:00:5E:10:00:04");
    EXPECT_EQ(WwnText(0x1), "00:00:00:00:00:00:00:01");
    EXPECT_EQ(WwnText(0), "");
    EXPECT_EQ(WwnText(0xffffffffffffffff), "");
}

TEST(NumberBehind, IsTheWholeRestOfTheName) {
    EXPECT_EQ(NumberBehind("host", "host12"), 12U);
    EXPECT_EQ(NumberBehind("host", "host"), std::nullopt);
    EXPECT_EQ(NumberBehind("host", "host1a"), std::nullopt);
    EXPECT_EQ(NumberBehind("host", "hos1"), std::nullopt);
    EXPECT_EQ(NumberBehind("host", "host-1"), std::nullopt);
}

}  // namespace
}  // namespace tavrolinux
