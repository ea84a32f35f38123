#include "platform/encoding.h"

#include <gtest/gtest.h>

#include <clocale>
#include <optional>
#include <string>

namespace tavro::platform {
namespace {

constexpr unsigned Japanese = 932;
constexpr unsigned Chinese = 936;
constexpr unsigned WestEuropean = 1252;

// A unit that is no character by itself.
std::wstring LoneHalf(unsigned half) {
    return std::wstring(1, static_cast<wchar_t>(half));
}

TEST(EncodeText, AsciiIsTheSameInEveryCodePage) {
    std::wstring text;
    std::string bytes;
    for (char character = 0; character < 0x7F; ++character) {
        text += static_cast<wchar_t>(character);
        bytes += character;
    }
    for (const unsigned codePage : {Japanese, Chinese, WestEuropean, Utf8CodePage}) {
        EXPECT_EQ(EncodeText(text, codePage), bytes) << codePage;
    }
}

TEST(EncodeText, EmptyTextGivesNoBytes) {
    for (const unsigned codePage : {Japanese, Chinese, WestEuropean, Utf8CodePage}) {
        EXPECT_EQ(EncodeText(L"", codePage), "");
    }
}

TEST(EncodeText, Utf8OfEveryLength) {
    EXPECT_EQ(EncodeText(L"\u0080\u07FF", Utf8CodePage), "\xC2\x80\xDF\xBF");
    EXPECT_EQ(EncodeText(L"\u0800\uFFFF", Utf8CodePage), "\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(EncodeText(L"\U00010000\U0010FFFF", Utf8CodePage),
              "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    EXPECT_EQ(EncodeText(L"日本語", Utf8CodePage), "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E");
}

// ASCII is taken several characters at a time.
TEST(EncodeText, OneCharacterBeyondAsciiAnywhereInAText) {
    for (std::size_t length = 1; length <= 40; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            const std::wstring before(place, L'a');
            const std::wstring after(length - place - 1, L'z');
            EXPECT_EQ(EncodeText(before + L"\u0080" + after, Utf8CodePage),
                      std::string(place, 'a') + "\xC2\x80" + std::string(after.size(), 'z'));
        }
    }
}

TEST(AppendEncoded, TheBytesStandBehindWhatWasThere) {
    std::string bytes = "before ";
    AppendEncoded(L"\u00E9 after", Utf8CodePage, bytes);
    EXPECT_EQ(bytes, "before \xC3\xA9 after");
    AppendEncoded(L"", Utf8CodePage, bytes);
    EXPECT_EQ(bytes, "before \xC3\xA9 after");
}

TEST(IsAscii, OneOtherByteAnywhereIsFound) {
    EXPECT_TRUE(IsAscii(""));
    for (std::size_t length = 1; length <= 20; ++length) {
        std::string bytes(length, '\x7F');
        EXPECT_TRUE(IsAscii(bytes));
        for (std::size_t place = 0; place < length; ++place) {
            bytes[place] = '\x80';
            EXPECT_FALSE(IsAscii(bytes)) << length << ' ' << place;
            bytes[place] = '\x7F';
        }
    }
}

TEST(EncodeText, HalvesOfSurrogatePairsBecomeOneQuestionMarkEach) {
    const std::wstring text = L"a" + LoneHalf(0xD83D) + L"b" + LoneHalf(0xDE00) + L"c";
    for (const unsigned codePage : {Japanese, Chinese, WestEuropean, Utf8CodePage}) {
        EXPECT_EQ(EncodeText(text, codePage), "a?b?c") << codePage;
    }
    EXPECT_EQ(EncodeText(LoneHalf(0xD83D), Utf8CodePage), "?");
}

TEST(EncodeText, HalvesInTheWrongOrderAreNoPair) {
    EXPECT_EQ(EncodeText(LoneHalf(0xDE00) + LoneHalf(0xD83D), Utf8CodePage), "??");
}

TEST(EncodeText, JapaneseIn932) {
    EXPECT_EQ(EncodeText(L"日本語", Japanese), "\x93\xFA\x96\x7B\x8C\xEA");
    // A half-width katakana, and a character whose second byte is a backslash.
    EXPECT_EQ(EncodeText(L"\uFF71表", Japanese), "\xB1\x95\x5C");
}

TEST(EncodeText, ChineseIn936) {
    EXPECT_EQ(EncodeText(L"中文", Chinese), "\xD6\xD0\xCE\xC4");
}

TEST(EncodeText, WestEuropeanIn1252) {
    EXPECT_EQ(EncodeText(L"\u00E9\u20AC\u00FF", WestEuropean), "\xE9\x80\xFF");
}

TEST(EncodeText, OnlyTheCharacterThatIsMissingBecomesAQuestionMark) {
    EXPECT_EQ(EncodeText(L"a日b\u00E9c", WestEuropean),
              "a?b\xE9"
              "c");
    EXPECT_EQ(EncodeText(L"日\u00E9本", Japanese), "\x93\xFA?\x96\x7B");
    EXPECT_EQ(EncodeText(L"中\U0001F600文", Chinese), "\xD6\xD0?\xCE\xC4");
    EXPECT_EQ(EncodeText(L"\U0001F600", WestEuropean), "?");
}

TEST(EncodeText, LookAlikesAreNotSubstituted) {
    // GREEK CAPITAL SIGMA, which a best fit would turn into S, and INFINITY, which it would turn
    // into 8.
    EXPECT_EQ(EncodeText(L"\u03A3\u221E", WestEuropean), "??");
}

TEST(EncodeText, AnUnknownCodePageKeepsAscii) {
    EXPECT_EQ(EncodeText(L"ab\u00E9", 64999), "ab?");
}

TEST(EncodeExactly, GivesTheBytesOfATextThatTheCodePageHas) {
    EXPECT_EQ(EncodeExactly(L"", WestEuropean), "");
    EXPECT_EQ(EncodeExactly(L"?\u00E9x\u00B5", WestEuropean), "?\xE9x\xB5");
    EXPECT_EQ(EncodeExactly(L"\u65E5\u221E", Japanese), "\x93\xFA\x81\x87");
    EXPECT_EQ(EncodeExactly(L"\uFF02\U0001F600", Utf8CodePage), "\xEF\xBC\x82\xF0\x9F\x98\x80");
}

TEST(EncodeExactly, GivesNothingForOneCharacterThatIsMissing) {
    for (const wchar_t* text : {L"a\u65E5", L"\uFF02", L"\u221E", L"e\u0301", L"\U0001F600"}) {
        EXPECT_EQ(EncodeExactly(text, WestEuropean), std::nullopt);
    }
    EXPECT_EQ(EncodeExactly(L"\u00E9", Japanese), std::nullopt);
}

TEST(EncodeExactly, GivesNothingForHalfASurrogatePair) {
    for (const unsigned codePage : {Japanese, WestEuropean, Utf8CodePage}) {
        EXPECT_EQ(EncodeExactly(L"a" + LoneHalf(0xD83D) + L"b", codePage), std::nullopt);
        EXPECT_EQ(EncodeExactly(LoneHalf(0xDE00), codePage), std::nullopt);
    }
}

TEST(DecodeText, Utf8OfEveryLength) {
    EXPECT_EQ(DecodeText("a\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80", Utf8CodePage),
              L"a\u0080\u0800\U00010000");
    EXPECT_EQ(DecodeText("", Utf8CodePage), L"");
    EXPECT_EQ(DecodeText(std::string(3, '\0'), Utf8CodePage), std::wstring(3, L'\0'));
}

struct Malformed {
    std::string bytes;
    std::wstring text;
};

TEST(DecodeText, EachMalformedUtf8SequenceBecomesTheReplacementCharacter) {
    const Malformed cases[] = {
        {"\x80", L"\uFFFD"},                                // a trail byte alone
        {"\xFF\xFE", L"\uFFFD\uFFFD"},                      // never used
        {"a\xC3", L"a\uFFFD"},                              // cut off at the end
        {"\xE6\x97", L"\uFFFD"},                            // cut off later
        {"\xE6\x97z", L"\uFFFDz"},                          // cut off in the middle
        {"\xC0\xAF", L"\uFFFD\uFFFD"},                      // overlong, two bytes
        {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},            // overlong, three bytes
        {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},            // half of a surrogate pair
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last character
        {"\xF0\x90\x80", L"\uFFFD"},                        // three of four bytes
    };
    for (const Malformed& malformed : cases) {
        EXPECT_EQ(DecodeText(malformed.bytes, Utf8CodePage), malformed.text)
            << ::testing::PrintToString(malformed.bytes);
    }
}

TEST(DecodeText, EncodedTextComesBack) {
    EXPECT_EQ(DecodeText(EncodeText(L"日本語 abc", Japanese), Japanese), L"日本語 abc");
    EXPECT_EQ(DecodeText(EncodeText(L"中文 abc", Chinese), Chinese), L"中文 abc");
    EXPECT_EQ(DecodeText(EncodeText(L"\u00E9\u20AC", WestEuropean), WestEuropean), L"\u00E9\u20AC");
    const std::wstring faces = L"\U0001F600日\U0001F601";
    EXPECT_EQ(DecodeText(EncodeText(faces, Utf8CodePage), Utf8CodePage), faces);
}

TEST(DecodeText, LongTextIsDecodedWhole) {
    std::wstring text;
    for (int count = 0; count < 5000; ++count) {
        text += L"日本";
    }
    EXPECT_EQ(DecodeText(EncodeText(text, Japanese), Japanese), text);
}

TEST(DecodeText, AnUnknownCodePageIsRefused) {
    EXPECT_EQ(DecodeText("a", 64999), std::nullopt);
}

TEST(DecodeText, AsciiInTheSystemCodePage) {
    EXPECT_EQ(DecodeText("<a b=\"1\"/>", SystemCodePage), L"<a b=\"1\"/>");
    EXPECT_EQ(DecodeText("", SystemCodePage), L"");
}

TEST(LooksLikeUtf16, TextWithAMark) {
    EXPECT_TRUE(LooksLikeUtf16(std::string("\xFF\xFE<\0a\0>\0", 8)));
}

TEST(LooksLikeUtf16, TextWithoutAMark) {
    std::string bytes;
    for (const char character :
         std::string("<Initiator_Name value=\"iqn.2015-01.example\"/>\r\n")) {
        bytes += character;
        bytes += '\0';
    }
    EXPECT_TRUE(LooksLikeUtf16(bytes));
}

TEST(LooksLikeUtf16, EightBitTextIsNot) {
    EXPECT_FALSE(LooksLikeUtf16("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a b=\"c\"/>\n"));
    EXPECT_FALSE(LooksLikeUtf16("\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<a/>\r\n"));
}

TEST(LooksLikeUtf16, ATerminatorDoesNotMakeEightBitTextUtf16) {
    for (const char* text : {"<?xml version=\"1.0\"?>\n<a/>", "<?xml version=\"1.0\"?>\n<a/>\n"}) {
        EXPECT_FALSE(LooksLikeUtf16(std::string(text) + '\0'));
    }
}

#ifndef _WIN32
TEST(LooksLikeUtf16, ZerosAtTheEndAreNotCounted) {
    // A file that was filled up to a whole block.
    for (const char* text : {"<a/>", "<ab/>", "<?xml version=\"1.0\"?>\n<a/>"}) {
        std::string bytes = text;
        bytes.resize(1024);
        EXPECT_FALSE(LooksLikeUtf16(bytes)) << text;
    }
    std::string bytes("<\0a\0/\0>\0", 8);
    bytes.resize(1024);
    EXPECT_TRUE(LooksLikeUtf16(bytes));
    EXPECT_FALSE(LooksLikeUtf16(std::string(1024, '\0')));
}
#endif

}  // namespace
}  // namespace tavro::platform
