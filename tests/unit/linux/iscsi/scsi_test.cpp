#include "linux/iscsi/scsi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace tavrolinux {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using Bytes = std::vector<std::uint8_t>;

// An answer of zeros with a text in it.
Bytes WithText(std::size_t size, std::size_t at, std::string_view text) {
    Bytes bytes(size);
    std::ranges::copy(text, bytes.begin() + static_cast<std::ptrdiff_t>(at));
    return bytes;
}

Bytes LunList(std::initializer_list<std::uint16_t> addresses) {
    Bytes bytes(8 + 8 * addresses.size());
    bytes[3] = static_cast<std::uint8_t>(8 * addresses.size());
    std::size_t at = 8;
    for (const std::uint16_t address : addresses) {
        bytes[at] = static_cast<std::uint8_t>(address >> 8U);
        bytes[at + 1] = static_cast<std::uint8_t>(address & 0xFFU);
        at += 8;
    }
    return bytes;
}

TEST(ReportedLuns, AreReadInTheirOrder) {
    EXPECT_THAT(ParseReportedLuns(LunList({0, 1, 0x4100})), ElementsAre(0, 1, 0x4100));
    EXPECT_EQ(LunNumber(1), 1);
    EXPECT_EQ(LunNumber(0x4100), 256);
}

TEST(ReportedLuns, AreEachThereOnce) {
    EXPECT_THAT(ParseReportedLuns(LunList({1, 0, 1, 1})), ElementsAre(1, 0));
}

TEST(ReportedLuns, AreCountedByWhatTheTargetSays) {
    Bytes list = LunList({1, 2});
    EXPECT_EQ(ReportedLunCount(list), 2U);
    list[1] = 1;
    EXPECT_EQ(ReportedLunCount(list), (0x10000U + 16) / 8);
    list.resize(7);
    EXPECT_EQ(ReportedLunCount(list), 0U);
}

// The size of the sense, and the sense in one of its two formats.
TEST(ScsiSense, TellsItsKey) {
    Bytes fixed(20);
    fixed[1] = 18;
    fixed[2] = 0x70;
    fixed[4] = 0x65;
    EXPECT_THAT(ParseSenseKey(fixed), Optional(5));
    const Bytes other{0, 8, 0x72, 0x06, 0x29, 0, 0, 0, 0, 0};
    EXPECT_THAT(ParseSenseKey(other), Optional(6));
    const Bytes described{0, 16, 0x72, 5, 0x24, 0, 0, 0, 0, 8, 2, 6, 0, 0, 0, 0, 0, 0};
    EXPECT_THAT(ParseSenseKey(described), Optional(5));
}

TEST(ScsiSense, IsNoneThatDoesNotKeepToItsSizes) {
    const std::initializer_list<Bytes> unusable{
        {},
        {0},
        {0, 0},
        {0, 18, 0x70, 0, 5, 0, 0, 0, 0, 0},
        {0, 8, 0x70, 0, 5, 0, 0, 0, 0, 0},
        {0, 8, 0x72, 5, 0, 0, 0, 0, 0, 1},
        {0, 16, 0x72, 5, 0, 0, 0, 0, 0, 8, 0, 200, 0, 0, 0, 0, 0, 0},
        {0, 16, 0x72, 5, 0, 0, 0, 0, 0, 8, 2, 2, 0, 0, 2, 2, 0, 0},
        {0, 8, 0x41, 5, 0, 0, 0, 0, 0, 0},
    };
    for (const Bytes& data : unusable) {
        EXPECT_EQ(ParseSenseKey(data), std::nullopt) << data.size();
    }
}

TEST(ReportedLuns, AreThoseOfTheFirstLevelAlone) {
    EXPECT_THAT(ParseReportedLuns(LunList({0xC101, 2})), ElementsAre(2));
    Bytes deeper = LunList({1, 2});
    deeper[8 + 3] = 5;
    EXPECT_THAT(ParseReportedLuns(deeper), ElementsAre(2));
}

TEST(ReportedLuns, AreReadNoFurtherThanTheAnswerGoes) {
    Bytes list = LunList({1, 2});
    list[3] = 255;
    EXPECT_THAT(ParseReportedLuns(list), ElementsAre(1, 2));
    list[0] = 255;
    list.pop_back();
    EXPECT_THAT(ParseReportedLuns(list), ElementsAre(1));
    list.resize(7);
    EXPECT_THAT(ParseReportedLuns(list), IsEmpty());
    EXPECT_THAT(ParseReportedLuns({}), IsEmpty());
}

TEST(ScsiInquiry, TellsWhatTheUnitIs) {
    Bytes bytes = WithText(36, 8, "EXAMPLE Disk Array      0001");
    Inquiry inquiry = ParseInquiry(bytes);
    EXPECT_TRUE(inquiry.isThere);
    EXPECT_TRUE(inquiry.hasBlocks);
    EXPECT_EQ(inquiry.vendor, "EXAMPLE");
    EXPECT_EQ(inquiry.product, "Disk Array");
    bytes[0] = 0x0C;  // an array's controller
    EXPECT_FALSE(ParseInquiry(bytes).hasBlocks);
    bytes[0] = 0x7F;  // nothing can be connected there
    EXPECT_FALSE(ParseInquiry(bytes).isThere);
}

TEST(ScsiInquiry, HasNoTextsWhereItIsShortOrHasNone) {
    Bytes bytes = WithText(20, 8, "EXAMPLE Disk");
    EXPECT_EQ(ParseInquiry(bytes).product, "Disk");
    bytes.resize(5);
    EXPECT_EQ(ParseInquiry(bytes).vendor, "");
    EXPECT_FALSE(ParseInquiry({}).isThere);
    EXPECT_EQ(ParseInquiry(WithText(36, 8, "A\x1B[2JB  ")).vendor, "A [2JB");
}

TEST(SerialNumber, IsReadOfItsPageAlone) {
    Bytes page = WithText(24, 4, "  beaf11 ");
    page[1] = 0x80;
    page[3] = 9;
    EXPECT_EQ(ParseSerialNumber(page), "beaf11");
    page[3] = 4;
    EXPECT_EQ(ParseSerialNumber(page), "be");
    page[2] = 0xFF;
    EXPECT_EQ(ParseSerialNumber(page), "beaf11");
    page[1] = 0x83;
    EXPECT_EQ(ParseSerialNumber(page), "");
    page.resize(3);
    EXPECT_EQ(ParseSerialNumber(page), "");
}

TEST(Capacity, IsOneMoreThanTheLastBlock) {
    const Bytes small{0, 0, 0x7F, 0xFF, 0, 0, 2, 0};
    ASSERT_TRUE(ParseCapacity10(small));
    EXPECT_EQ(ParseCapacity10(small)->blocks, 32768U);
    EXPECT_EQ(ParseCapacity10(small)->blockSize, 512U);
    const Bytes large{0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0x10, 0, 0, 0};
    ASSERT_TRUE(ParseCapacity16(large));
    EXPECT_EQ(ParseCapacity16(large)->blocks, 0x100000001U);
    EXPECT_EQ(ParseCapacity16(large)->blockSize, 4096U);
}

TEST(Capacity, IsNotToldByAnAnswerThatIsTooShortOrTooSmallForIt) {
    EXPECT_FALSE(ParseCapacity10(Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 2, 0}));
    EXPECT_FALSE(ParseCapacity10(Bytes(7)));
    EXPECT_FALSE(ParseCapacity16(Bytes(11)));
}

}  // namespace
}  // namespace tavrolinux
