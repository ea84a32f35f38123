#include "mgmt/layout.h"

#include <gtest/gtest.h>

namespace tavro {
namespace {

const std::wstring TitleRule = L"\t" + std::wstring(67, L'-') + L"\n";

std::wstring Blanks(std::size_t count) {
    return std::wstring(count, L' ');
}

TEST(Layout, TitleStandsBetweenTwoRules) {
    // (4 + 0) / 2 = 2 gives a padding of 41 - 2.
    EXPECT_EQ(LayOutMessage(L"Name", "", Layout::Title, ""),
              TitleRule + Blanks(39) + L"Name\n" + TitleRule);
    EXPECT_EQ(LastLayout.padding, 39);
    EXPECT_EQ(LastLayout.columnWidth, 33);
    EXPECT_EQ(LastLayout.indent, 8);
}

TEST(Layout, TitleCountsItsWholeValueAndPrintsItTrimmed) {
    // (4 + 7) / 2 = 5, the blanks of the value included.
    EXPECT_EQ(LayOutMessage(L"Name", "  abc  ", Layout::Title, ""),
              TitleRule + Blanks(36) + L"Name : abc\n" + TitleRule);
}

TEST(Layout, LongTitleIsPaddedByEight) {
    const std::wstring message(68, L'm');
    EXPECT_EQ(LayOutMessage(message, "", Layout::Title, ""),
              TitleRule + Blanks(8) + message + L"\n" + TitleRule);
    EXPECT_EQ(LastLayout.padding, 8);
    // A half of 33 still centres: 41 - 33 is 8 as well.
    EXPECT_EQ(LayOutMessage(message.substr(1), "", Layout::Title, ""),
              TitleRule + Blanks(8) + message.substr(1) + L"\n" + TitleRule);
}

TEST(Layout, TitleAndMessageLeaveThePrefixOut) {
    EXPECT_EQ(LayOutMessage(L"Name", "", Layout::Title, "PRE"),
              TitleRule + Blanks(39) + L"Name\n" + TitleRule);
    EXPECT_EQ(LayOutMessage(L"Name", " ", Layout::Message, "PRE"), L" \nName\n");
}

TEST(Layout, RowAlignsItsColon) {
    // The field of 36 - 5 ends in ": ".
    EXPECT_EQ(LayOutMessage(L"Label", "value", Layout::Row, ""),
              L"\tLabel" + Blanks(29) + L": value\n");
    EXPECT_EQ(LastLayout.padding, 31);
    EXPECT_EQ(LastLayout.columnWidth, 40);
    EXPECT_EQ(LastLayout.indent, 4);
}

TEST(Layout, ACharacterThatIsAPairInUtf16CountsTwice) {
    EXPECT_EQ(LayOutMessage(L"Lab\U0001F600", "value", Layout::Row, ""),
              L"\tLab\U0001F600" + Blanks(29) + L": value\n");
    EXPECT_EQ(LastLayout.padding, 31);
    EXPECT_EQ(LayOutMessage(L"Na\U0001F600", "", Layout::Title, ""),
              TitleRule + Blanks(39) + L"Na\U0001F600\n" + TitleRule);
}

TEST(Layout, RowKeepsItsValueAsItIs) {
    EXPECT_EQ(LayOutMessage(L"Label", "", Layout::Row, ""), L"\tLabel" + Blanks(29) + L": \n");
    EXPECT_EQ(LayOutMessage(L"Label", " : ", Layout::Row, ""),
              L"\tLabel" + Blanks(29) + L":  : \n");
}

TEST(Layout, RowCountsThePrefix) {
    EXPECT_EQ(LayOutMessage(L"Label", "v", Layout::Row, "0. "),
              L"\t0. Label" + Blanks(26) + L": v\n");
}

TEST(Layout, LongLabelIsFollowedByItsColonDirectly) {
    for (const std::size_t length : {34U, 35U, 36U, 37U, 60U}) {
        const std::wstring label(length, L'l');
        EXPECT_EQ(LayOutMessage(label, "v", Layout::Row, ""), L"\t" + label + L": v\n") << length;
        EXPECT_EQ(LastLayout.padding, 36 - static_cast<std::int32_t>(length));
    }
    const std::wstring label(33, L'l');
    EXPECT_EQ(LayOutMessage(label, "v", Layout::Row, ""), L"\t" + label + L" : v\n");
}

TEST(Layout, MessageAloneFollowsABlankLine) {
    for (const char* const emptyLike : {"", " ", ":", "  :  "}) {
        EXPECT_EQ(LayOutMessage(L"Text", emptyLike, Layout::Message, ""), L" \nText\n")
            << emptyLike;
    }
}

TEST(Layout, TwoBlanksAreAValue) {
    EXPECT_EQ(LayOutMessage(L"Text", "  ", Layout::Message, ""), L" Text : \n");
}

TEST(Layout, MessageWithValueIsTrimmed) {
    EXPECT_EQ(LayOutMessage(L"Text", "abc ", Layout::Message, ""), L" Text : abc\n");
    EXPECT_EQ(LayOutMessage(L"Text", "\tabc", Layout::Message, ""), L" Text : \tabc\n");
}

TEST(Layout, PromptLeavesItsLineOpen) {
    EXPECT_EQ(LayOutMessage(L"Question", "ignored", Layout::Prompt, "[PF0]"),
              L"\n\t[PF0]Question : ");
}

TEST(Layout, NoticeAndSectionShowThePrefixedTextOnly) {
    EXPECT_EQ(LayOutMessage(L"Note", "ignored", Layout::Notice, "P"), L"\n\t\tPNote\n");
    EXPECT_EQ(LayOutMessage(L"Note", "ignored", Layout::Section, "P"), L"\n\t[PNote]\n\n");
}

TEST(Layout, AnyOtherNumberIsPlain) {
    EXPECT_EQ(LayOutMessage(L"Text", " v ", Layout::Plain, "P"), L"Text v \n");
    EXPECT_EQ(LayOutMessage(L"Text", "v", static_cast<Layout>(99), "P"), L"Textv\n");
}

TEST(Layout, BytesOfAValueAreWidened) {
    EXPECT_EQ(LayOutMessage(L"T", "\xE9", Layout::Plain, ""),
              (std::wstring{L'T', wchar_t{0xE9}, L'\n'}));
}

TEST(Layout, WideRowKeepsItsWideValue) {
    EXPECT_EQ(LayOutRow(L"Label", L"\u6771\u4EAC", ""),
              L"\tLabel" + Blanks(29) + L": \u6771\u4EAC\n");
}

}  // namespace
}  // namespace tavro
