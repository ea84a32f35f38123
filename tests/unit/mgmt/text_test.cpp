#include "mgmt/text.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavro {
namespace {

TEST(Text, WidensEveryByteToTheUnitOfTheSameValue) {
    EXPECT_EQ(ToWide("A\xFF\x80"), (std::wstring{L'A', wchar_t{0xFF}, wchar_t{0x80}}));
}

TEST(Text, NarrowsEveryUnitToItsLowByte) {
    EXPECT_EQ(ToNarrow(std::wstring{L'A', wchar_t{0x30C6}, wchar_t{0xFF}}), "A\xC6\xFF");
}

TEST(Text, NarrowsBothUnitsOfACharacterThatIsAPair) {
    // D83D DE00, D83D DC41, D800 DC00 and DBFF DFFF, whatever units wide text has here.
    EXPECT_EQ(ToNarrow(L"a\U0001F600b"), std::string("a=\0b", 4));
    EXPECT_EQ(ToNarrow(L"\U0001F441"), "=A");
    EXPECT_EQ(ToNarrow(L"\U00010000\uFFFF\U0010FFFF"), std::string("\0\0\xFF\xFF\xFF", 5));
}

TEST(Text, CountsACharacterThatIsAPairTwice) {
    EXPECT_EQ(Utf16Length(L""), 0U);
    EXPECT_EQ(Utf16Length(L"a\uFFFF"), 2U);
    EXPECT_EQ(Utf16Length(L"\U00010000a\U0010FFFF"), 5U);
}

TEST(Text, AppendedTextDoesNotMoveWhatFits) {
    const std::wstring text = L"secret secret secret \U0001F441";
    std::string narrow = "before ";
    narrow.reserve(narrow.size() + Utf16Length(text));
    const char* const place = narrow.data();
    AppendNarrow(text, narrow);
    EXPECT_EQ(narrow, "before secret secret secret =A");
    EXPECT_EQ(narrow.data(), place);
}

TEST(Text, KeepsZerosInBothDirections) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(ToNarrow(ToWide(text)), text);
}

TEST(Text, OnlyBlanksAtTheEndsAreRemoved) {
    EXPECT_EQ(WithoutOuterBlanks("  a b  "), "a b");
    EXPECT_EQ(WithoutOuterBlanks("\ta\t"), "\ta\t");
    EXPECT_EQ(WithoutOuterBlanks("   "), "");
    EXPECT_EQ(WithoutOuterBlanks(""), "");
}

TEST(Text, LeadingIntegerReadsLikeAtoi) {
    EXPECT_EQ(LeadingInteger("6"), 6);
    EXPECT_EQ(LeadingInteger("  12abc"), 12);
    EXPECT_EQ(LeadingInteger("\t-7 "), -7);
    EXPECT_EQ(LeadingInteger("+3"), 3);
    EXPECT_EQ(LeadingInteger("abc"), 0);
    EXPECT_EQ(LeadingInteger(""), 0);
    EXPECT_EQ(LeadingInteger("   "), 0);
    EXPECT_EQ(LeadingInteger("- 5"), 0);
}

TEST(Text, LeadingIntegerStopsAtTheBoundsOf32Bits) {
    EXPECT_EQ(LeadingInteger("2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(LeadingInteger("2147483648"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(LeadingInteger("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(LeadingInteger("99999999999999999999999999"),
              std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(LeadingInteger("-99999999999999999999999999"),
              std::numeric_limits<std::int32_t>::min());
}

}  // namespace
}  // namespace tavro
