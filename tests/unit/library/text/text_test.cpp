#include "library/text/text.h"

#include <gtest/gtest.h>

namespace tavrolib {
namespace {

TEST(Text, WideTextsBecomeUtf8AndBack) {
    const std::wstring wide = L"a\u00e9\u65e5\u672c\U0001F600";
    EXPECT_EQ(Utf8FromWide(wide), "a\xC3\xA9\xE6\x97\xA5\xE6\x9C\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(WideFromUtf8(Utf8FromWide(wide)), wide);
}

TEST(Text, WhatIsNoCharacterIsReplaced) {
    const std::wstring unpaired{static_cast<wchar_t>(0xD83D), L'x'};
    EXPECT_EQ(Utf8FromWide(unpaired), "\xEF\xBF\xBDx");
    EXPECT_EQ(WideFromUtf8("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(WideFromUtf8("\xC0\x80"), L"\uFFFD\uFFFD");
}

TEST(Text, ValidUtf8StandsAsItIsInJson) {
    EXPECT_EQ(Utf8FromBytes("iqn.x\xC3\xA9\x03"), "iqn.x\xC3\xA9\x03");
}

TEST(Text, ByteOutsideUtf8StandsAsPrivateUseCharacter) {
    // U+F7E9 is EF 9F A9 in UTF-8.
    EXPECT_EQ(Utf8FromBytes("a\xE9z"), "a\xEF\x9F\xA9z");
    EXPECT_EQ(BytesFromUtf8("a\xEF\x9F\xA9z"), "a\xE9z");
}

TEST(Text, EverySequenceOfTwoBytesSurvives) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(BytesFromUtf8(Utf8FromBytes(bytes)), bytes) << first << ' ' << second;
        }
    }
}

TEST(Text, BytesThatLookLikeTheirOwnReplacementSurvive) {
    const std::string bytes = "\xEF\x9F\xA9";
    EXPECT_NE(Utf8FromBytes(bytes), bytes);
    EXPECT_EQ(BytesFromUtf8(Utf8FromBytes(bytes)), bytes);
}

TEST(Text, TruncatedAndOverlongSequencesSurvive) {
    for (const std::string bytes :
         {"\xE6\x97", "\xF0\x9F\x98", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(BytesFromUtf8(Utf8FromBytes(bytes)), bytes);
    }
}

}  // namespace
}  // namespace tavrolib
