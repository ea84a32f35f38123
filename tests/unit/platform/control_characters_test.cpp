#include "platform/control_characters.h"

#include <gtest/gtest.h>

#include <string>

namespace tavro::platform {
namespace {

TEST(MaskControlCharacters, EveryNumberOfWideText) {
    for (int number = 0; number < 0x300; ++number) {
        const bool isControl =
            number < 0x20 || number == 0x7F || (number >= 0x80 && number <= 0x9F);
        const bool isMasked = isControl && number != '\t' && number != '\n';
        const std::wstring text(1, static_cast<wchar_t>(number));
        EXPECT_EQ(MaskControlCharacters(text), isMasked ? L"?" : text) << number;
    }
}

TEST(MaskControlCharacters, WideTextKeepsItsLength) {
    EXPECT_EQ(MaskControlCharacters(L"\x1B[2J name \x9B\x85\r\n\tend"), L"?[2J name ???\n\tend");
    EXPECT_EQ(MaskControlCharacters(std::wstring_view(L"a\0b", 3)), L"a?b");
    EXPECT_EQ(MaskControlCharacters(L"語\U0001F600"), L"語\U0001F600");
    EXPECT_EQ(MaskControlCharacters(std::wstring_view()), L"");
}

TEST(MaskControlCharacters, EverySingleByte) {
    for (int number = 0; number < 0x100; ++number) {
        const bool isControl =
            number < 0x20 || number == 0x7F || (number >= 0x80 && number <= 0x9F);
        const bool isMasked = isControl && number != '\t' && number != '\n';
        const std::string bytes(1, static_cast<char>(number));
        EXPECT_EQ(MaskControlCharacters(bytes), isMasked ? "?" : bytes) << number;
    }
}

TEST(MaskControlCharacters, Utf8CharactersStayAndEncodedControlsGo) {
    EXPECT_EQ(MaskControlCharacters("\xC2\x80|\xC2\x9B|\xC2\x9F|\xC2\xA0"), "?|?|?|\xC2\xA0");
    // П, 語 and an emoji have bytes 80 to 9F inside.
    const std::string text = "\xD0\x9F \xE8\xAA\x9E \xF0\x9F\x98\x80";
    EXPECT_EQ(MaskControlCharacters(text), text);
}

TEST(MaskControlCharacters, MalformedBytesHideNoControl) {
    EXPECT_EQ(MaskControlCharacters("\xC2"), "\xC2");
    EXPECT_EQ(MaskControlCharacters("\xC2\xC2\x9B"), "\xC2?");
    EXPECT_EQ(MaskControlCharacters("\xC2\x1B[2J"), "\xC2?[2J");
    EXPECT_EQ(MaskControlCharacters("\xE8\x9B"), "\xE8?");
    EXPECT_EQ(MaskControlCharacters("\xE8\x9B\x1B"), "\xE8??");
    EXPECT_EQ(MaskControlCharacters("\xF0\x9F\x98"), "\xF0??");
    // Forms that are longer than needed, half a surrogate pair, a number beyond the last character.
    EXPECT_EQ(MaskControlCharacters("\xC1\x9B"), "\xC1?");
    EXPECT_EQ(MaskControlCharacters("\xE0\x82\x9B"), "\xE0??");
    EXPECT_EQ(MaskControlCharacters("\xED\xA0\x80"), "\xED\xA0?");
    EXPECT_EQ(MaskControlCharacters("\xF4\x90\x80\x80"), "\xF4???");
    // A replacement character that stands in the text is one like any other.
    EXPECT_EQ(MaskControlCharacters("\xEF\xBF\xBD\x9B"), "\xEF\xBF\xBD?");
}

TEST(MaskControlCharacters, NoControlIsLeftBehindByAnyTwoBytes) {
    for (int first = 0; first < 0x100; ++first) {
        for (int second = 0x80; second <= 0x9F; ++second) {
            const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
            const std::string masked = MaskControlCharacters(bytes);
            const bool isCharacter = first >= 0xC3 && first <= 0xDF;
            EXPECT_EQ(masked.back(), isCharacter ? bytes.back() : '?') << first << ' ' << second;
        }
    }
}

}  // namespace
}  // namespace tavro::platform
