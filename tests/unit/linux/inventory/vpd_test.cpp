#include "linux/inventory/vpd.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrolinux {
namespace {

std::string Octet(std::size_t value) {
    return {static_cast<char>(value)};
}

// Large resources: a tag, and a length of two bytes, the lower one first.
std::string Resource(std::size_t tag, std::string_view content) {
    return Octet(tag) + Octet(content.size() & 0xFFU) + Octet(content.size() >> 8U) +
           std::string(content);
}

std::string Identifier(std::string_view text) {
    return Resource(0x82, text);
}

std::string ReadOnly(std::string_view keywords) {
    return Resource(0x90, keywords);
}

std::string ReadWrite(std::string_view keywords) {
    return Resource(0x91, keywords);
}

std::string Keyword(std::string_view name, std::string_view value) {
    return std::string(name) + Octet(value.size()) + std::string(value);
}

const std::string End = "\x78";

TEST(ProductData, AreTheKeywordsOfTheReadOnlyResource) {
    const ProductData data = ParseProductData(
        Identifier("Converged adapter") +
        ReadOnly(Keyword("PN", "TV-7001-02") + Keyword("EC", "A-5545") + Keyword("SN", "00000194") +
                 Keyword("RV", std::string(4, '\0'))) +
        ReadWrite(Keyword("SN", "not this") + Keyword("RW", std::string(4, '\0'))) + End);
    EXPECT_EQ(data.serialNumber, "00000194");
    EXPECT_EQ(data.partNumber, "TV-7001-02");
}

TEST(ProductData, AreTextsWithoutTheirFilling) {
    using namespace std::literals;
    const ProductData data = ParseProductData(
        ReadOnly(Keyword("SN", "  AB 12\0\0 "sv) + Keyword("PN", "\0    "sv)) + End);
    EXPECT_EQ(data.serialNumber, "AB 12");
    EXPECT_EQ(data.partNumber, "");
}

TEST(ProductData, AreEmptyWhenTheyAreNoTexts) {
    for (const char* value : {"AB\x01", "\xFF\xFF\xFF\xFF", "AB\nCD", "A\xC3\xA9", "A\x7F"}) {
        const ProductData data =
            ParseProductData(ReadOnly(Keyword("SN", value) + Keyword("PN", "P1")) + End);
        EXPECT_EQ(data.serialNumber, "") << value;
        EXPECT_EQ(data.partNumber, "P1") << value;
    }
}

TEST(ProductData, MayHaveLengthsOfTwoBytesAndOfNone) {
    const std::string longText(255, 'x');
    const ProductData data =
        ParseProductData(Identifier(std::string(300, 'i')) + ReadOnly("") +
                         ReadOnly(Keyword("V1", longText) + Keyword("V2", "") +
                                  Keyword("V3", longText) + Keyword("SN", longText)) +
                         End);
    EXPECT_EQ(data.serialNumber, longText);
}

TEST(ProductData, KeepTheFirstOfTwo) {
    const ProductData data = ParseProductData(
        ReadOnly(Keyword("SN", "first") + Keyword("SN", "second")) +
        ReadOnly(Keyword("SN", "third") + Keyword("PN", "of the second resource")) + End);
    EXPECT_EQ(data.serialNumber, "first");
    EXPECT_EQ(data.partNumber, "of the second resource");
}

TEST(ProductData, EndWithTheEndTagAndWithWhateverIsNoResource) {
    const std::string known = ReadOnly(Keyword("SN", "S1"));
    const std::string more = ReadOnly(Keyword("PN", "P1")) + End;
    EXPECT_EQ(ParseProductData(known + more).partNumber, "P1");
    for (const std::string& between :
         {End, std::string(1, '\0'), Octet(0xFF), Resource(0x84, "abc"), Octet(0x90)}) {
        const ProductData data = ParseProductData(known + between + more);
        EXPECT_EQ(data.serialNumber, "S1");
        EXPECT_EQ(data.partNumber, "");
    }
}

TEST(ProductData, EndWhereALengthReachesBeyondTheBytes) {
    const std::string keywords = Keyword("PN", "P1") + Keyword("SN", "S1");
    const std::string whole = ReadOnly(keywords);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(ParseProductData(whole.substr(0, size)).partNumber, "") << size;
    }
    EXPECT_EQ(ParseProductData(whole).serialNumber, "S1");
    // A keyword that reaches beyond its resource, though there are bytes behind that.
    const ProductData data = ParseProductData(
        ReadOnly(Keyword("PN", "P1") + "SN" + Octet(9) + "12345678") + ReadOnly(keywords) + End);
    EXPECT_EQ(data.partNumber, "P1");
    EXPECT_EQ(data.serialNumber, "S1");
    EXPECT_EQ(ParseProductData("").serialNumber, "");
}

}  // namespace
}  // namespace tavrolinux
