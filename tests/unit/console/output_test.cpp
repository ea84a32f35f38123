#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "console/console.h"
#include "recording_device.h"

namespace tavro::console {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ConsoleOutput, WideAndNarrowComeOutInTheOrderPrinted) {
    Recording recording;
    Redirect redirect(recording.ToBytes());
    Print(L"a");
    PrintNarrow("b");
    Print(L"語");
    PrintNarrowLine("d");
    EXPECT_THAT(recording.writes, ElementsAre("ab\xE8\xAA\x9E"
                                              "d\n"));
}

TEST(ConsoleOutput, ALineIsOneWriteAndNothingIsWrittenBeforeItsEnd) {
    Recording recording;
    Redirect redirect(recording.ToBytes());
    Print(L"one");
    Print(L" line");
    EXPECT_THAT(recording.writes, IsEmpty());
    EndLine();
    EXPECT_THAT(recording.writes, ElementsAre("one line\n"));
    PrintLine(L"next");
    EXPECT_THAT(recording.writes, ElementsAre("one line\n", "next\n"));
}

TEST(ConsoleOutput, EveryLineOfATextIsWritten) {
    Recording recording;
    Redirect redirect(recording.ToBytes());
    Print(L"a\n\nb\nc");
    EXPECT_THAT(recording.writes, ElementsAre("a\n", "\n", "b\n"));
    PrintNarrow("d\ne");
    EXPECT_THAT(recording.writes, ElementsAre("a\n", "\n", "b\n", "cd\n"));
    Flush();
    EXPECT_THAT(recording.writes, ElementsAre("a\n", "\n", "b\n", "cd\n", "e"));
}

TEST(ConsoleOutput, FlushWritesAPromptOnceAndNothingWritesNothing) {
    Recording recording;
    Redirect redirect(recording.ToBytes());
    Flush();
    Print(L"");
    PrintNarrow("");
    Flush();
    EXPECT_THAT(recording.writes, IsEmpty());
    Print(L"prompt : ");
    Flush();
    Flush();
    EXPECT_THAT(recording.writes, ElementsAre("prompt : "));
}

TEST(ConsoleOutput, LineEndsAreTheSystemsEverywhere) {
    Recording recording;
    Redirect redirect(recording.ToBytes(platform::Utf8CodePage, "\r\n"));
    Print(L"a\nb");
    EndLine();
    PrintNarrowLine("c\nd");
    EXPECT_THAT(recording.writes, ElementsAre("a\r\n", "b\r\n", "c\r\n", "d\r\n"));
}

TEST(ConsoleOutput, WhatTheCodePageLacksBecomesAQuestionMarkAndNoLineIsLost) {
    Recording recording;
    Redirect redirect(recording.ToBytes(1252, "\r\n"));
    PrintLine(L"ア dapter");
    PrintLine(L"\u00E9t\u00E9");
    PrintLine(L"after");
    EXPECT_THAT(recording.writes, ElementsAre("? dapter\r\n", "\xE9t\xE9\r\n", "after\r\n"));
}

TEST(ConsoleOutput, NarrowBytesAreNotTouched) {
    Recording recording;
    Redirect redirect(recording.ToBytes(932));
    PrintNarrowLine("\x80\xFF\x01\t");
    EXPECT_THAT(recording.writes, ElementsAre("\x80\xFF\x01\t\n"));
}

TEST(ConsoleOutput, AZeroCharacterDoesNotEndAText) {
    Recording recording;
    Redirect redirect(recording.ToBytes());
    PrintLine(std::wstring_view(L"a\0b", 3));
    EXPECT_THAT(recording.writes, ElementsAre(std::string("a\0b\n", 4)));
}

TEST(ConsoleOutput, AUnicodeConsoleGetsTextInOrder) {
    Recording recording;
    Redirect redirect(recording.ToText(932, "\r\n"));
    Print(L"日");
    PrintNarrow("\x96\x7B");
    PrintLine(L"語");
    PrintNarrow("x\n");
    EXPECT_THAT(recording.textWrites, ElementsAre(L"日本語\r\n", L"x\r\n"));
    EXPECT_THAT(recording.writes, IsEmpty());
}

TEST(ConsoleOutput, LostOutputStaysLostAndNothingIsThrown) {
    Recording recording;
    recording.writesLeft = 1;
    Redirect redirect(recording.ToBytes());
    PrintLine(L"arrives");
    EXPECT_FALSE(OutputIsLost());
    Print(L"lost");
    EXPECT_FALSE(OutputIsLost());
    EndLine();
    EXPECT_TRUE(OutputIsLost());
    recording.writesLeft = 10;
    PrintLine(L"too late");
    PrintNarrowLine("too late");
    Print(L"too\nlate\n");
    PrintNarrow("too late");
    EndLine();
    Flush();
    EXPECT_TRUE(OutputIsLost());
    EXPECT_THAT(recording.writes, ElementsAre("arrives\n"));
}

TEST(ConsoleOutput, LostTextOfAUnicodeConsoleStaysLost) {
    Recording recording;
    recording.writesLeft = 0;
    Redirect redirect(recording.ToText(1252, "\r\n"));
    PrintNarrowLine("lost");
    EXPECT_TRUE(OutputIsLost());
    recording.writesLeft = 10;
    PrintLine(L"too late");
    PrintNarrow("too late");
    Flush();
    EXPECT_THAT(recording.textWrites, IsEmpty());
}

TEST(ConsoleOutput, LostOutputIsNotTriedAgain) {
    std::size_t tries = 0;
    Device device;
    device.writeBytes = [&tries](std::string_view) {
        ++tries;
        return false;
    };
    Redirect redirect(device);
    Print(L"one\ntwo\nthree\n");
    EndLine();
    EXPECT_EQ(tries, 1U);
}

Device InBlocksOf(std::size_t size, Device device) {
    device.blockSize = size;
    return device;
}

TEST(ConsoleOutputInBlocks, LinesAreKeptUntilABlockIsFull) {
    Recording recording;
    Redirect redirect(InBlocksOf(6, recording.ToBytes()));
    PrintLine(L"a");
    PrintNarrowLine("b");
    EXPECT_THAT(recording.writes, IsEmpty());
    PrintLine(L"c\nd");
    EXPECT_THAT(recording.writes, ElementsAre("a\nb\nc\n"));
    PrintLine(L"longer than a block");
    EXPECT_THAT(recording.writes, ElementsAre("a\nb\nc\n", "d\nlonger than a block\n"));
}

TEST(ConsoleOutputInBlocks, AFlushAndAQuestionWriteWhatIsThere) {
    Recording recording;
    recording.input = {"answer\n"};
    Redirect redirect(InBlocksOf(100, recording.ToBytes()));
    Print(L"a\nb");
    Flush();
    EXPECT_THAT(recording.writes, ElementsAre("a\nb"));
    Print(L"c\nprompt : ");
    EXPECT_EQ(ReadLine(), "answer");
    EXPECT_THAT(recording.writesBeforeRead, ElementsAre("a\nb", "c\nprompt : "));
}

TEST(ConsoleOutputInBlocks, TextIsKeptLikeBytes) {
    Recording recording;
    Redirect redirect(InBlocksOf(4, recording.ToText(platform::Utf8CodePage, "\r\n")));
    PrintLine(L"a");
    EXPECT_THAT(recording.textWrites, IsEmpty());
    PrintNarrowLine("b");
    EXPECT_THAT(recording.textWrites, ElementsAre(L"a\r\nb\r\n"));
}

TEST(ConsoleOutputInBlocks, OutputIsLostWithTheBlockThatCannotBeWritten) {
    Recording recording;
    recording.writesLeft = 0;
    Redirect redirect(InBlocksOf(4, recording.ToBytes()));
    PrintLine(L"a");
    EXPECT_FALSE(OutputIsLost());
    PrintLine(L"b");
    EXPECT_TRUE(OutputIsLost());
}

TEST(ConsoleOutput, WidenedBytesAreTheCharactersOfTheirNumbers) {
    Recording utf8;
    {
        Redirect redirect(utf8.ToBytes());
        PrintWidened("plain\tASCII\x1B");
        PrintWidened("\n\xE9t\xE9 ");
        Print(L"\u00E9");
        EndLine();
    }
    EXPECT_THAT(utf8.writes, ElementsAre("plain\tASCII\x1B\n", "\xC3\xA9t\xC3\xA9 \xC3\xA9\n"));
    Recording codePage;
    {
        Redirect redirect(codePage.ToBytes(1252));
        PrintWidened("\xE9t\xE9\n");
    }
    EXPECT_THAT(codePage.writes, ElementsAre("\xE9t\xE9\n"));
    Recording text;
    {
        Redirect redirect(text.ToText(platform::Utf8CodePage, "\r\n"));
        PrintWidened("\xE9\n");
    }
    EXPECT_THAT(text.textWrites, ElementsAre(L"\u00E9\r\n"));
}

TEST(ConsoleOutput, ReadingWithLostOutputIsRefusedBeforeAnythingIsRead) {
    Recording recording;
    recording.input = {"answer\n"};
    recording.writesLeft = 0;
    Redirect redirect(recording.ToBytes());
    Print(L"prompt : ");
    EXPECT_THROW(ReadLine(), OutputLost);
    EXPECT_THROW(ReadLine(), OutputLost);
    EXPECT_THROW(ReadLineLeavingLineEnd(), OutputLost);
    EXPECT_THROW(ReadCharacter(), OutputLost);
    EXPECT_THROW(SkipCharacter(), OutputLost);
    EXPECT_EQ(recording.nextInput, 0U);
}

TEST(ConsoleOutput, WhatNeedsOutputIsWrittenOrRefused) {
    Recording recording;
    recording.writesLeft = 1;
    Redirect redirect(recording.ToBytes());
    Print(L"notice");
    EXPECT_NO_THROW(RequireOutput());
    EXPECT_THAT(recording.writes, ElementsAre("notice"));
    EXPECT_NO_THROW(RequireOutput());
    Print(L"notice");
    EXPECT_THROW(RequireOutput(), OutputLost);
    EXPECT_THROW(RequireOutput(), OutputLost);
}

TEST(ConsoleOutput, AListIsShownUntilOutputIsLost) {
    Recording recording;
    recording.writesLeft = 2;
    Redirect redirect(recording.ToBytes());
    std::vector<int> shown;
    const auto show = [&shown](int number) {
        shown.push_back(number);
        PrintLine(std::to_wstring(number));
    };
    ShowEach(std::vector<int>{1, 2}, show);
    EXPECT_THAT(shown, ElementsAre(1, 2));
    ShowEach(std::vector<int>{3, 4, 5}, show);
    EXPECT_THAT(shown, ElementsAre(1, 2, 3));
    EXPECT_THAT(recording.writes, ElementsAre("1\n", "2\n"));
}

TEST(ConsoleOutput, AnotherConsoleIsNotLostWithThisOne) {
    Recording outer;
    outer.writesLeft = 0;
    Redirect redirect(outer.ToBytes());
    PrintLine(L"lost");
    {
        MemoryConsole inner;
        EXPECT_FALSE(OutputIsLost());
        PrintLine(L"inside");
        EXPECT_EQ(inner.Output(), "inside\n");
    }
    EXPECT_TRUE(OutputIsLost());
}

TEST(ConsoleOutput, RedirectsNestAndKeepWhatIsPending) {
    Recording outer;
    Redirect redirect(outer.ToBytes());
    Print(L"begun ");
    {
        MemoryConsole inner;
        PrintLine(L"inside");
        EXPECT_EQ(inner.Output(), "inside\n");
    }
    PrintLine(L"ended");
    EXPECT_THAT(outer.writes, ElementsAre("begun ended\n"));
}

Device Terminal(Device device) {
    device.isTerminal = true;
    return device;
}

TEST(ConsoleOnATerminal, ControlCharactersOfATextAreQuestionMarks) {
    Recording recording;
    Redirect redirect(Terminal(recording.ToBytes()));
    PrintLine(
        L"a\x1B[2J\tb\rc\x9B"
        L"d\x7F\u00A0");
    PrintLine(std::wstring_view(L"e\0f", 3));
    PrintNarrowLine("g\x1B[2J\th\r\xC2\x9Bi\x9Bj\x7F\xC2\xA0\xD0\x9F");
    EXPECT_THAT(recording.writes, ElementsAre("a?[2J\tb?c?d?\xC2\xA0\n", "e?f\n",
                                              "g?[2J\th??i?j?\xC2\xA0\xD0\x9F\n"));
}

TEST(ConsoleOnATerminal, ControlCharactersOfWidenedBytesAreQuestionMarks) {
    Recording recording;
    Redirect redirect(Terminal(recording.ToBytes()));
    PrintWidened("a\x1B[2J\tb\x9B");
    PrintWidened("\n");
    EXPECT_THAT(recording.writes, ElementsAre("a?[2J\tb?\n"));
}

TEST(ConsoleOnATerminal, LineEndsAreTheConsolesOwn) {
    Recording recording;
    Redirect redirect(Terminal(recording.ToBytes(platform::Utf8CodePage, "\r\n")));
    Print(L"a\nb\r\n");
    PrintNarrow("c\r\nd\n");
    EXPECT_THAT(recording.writes, ElementsAre("a\r\n", "b?\r\n", "c?\r\n", "d\r\n"));
}

TEST(ConsoleOnATerminal, AUnicodeConsoleGetsQuestionMarksToo) {
    Recording recording;
    Redirect redirect(Terminal(recording.ToText(platform::Utf8CodePage, "\r\n")));
    Print(L"a\x1B\x9B\t");
    PrintNarrow("b\x1B\xC2\x9B\t\xD0\x9F");
    EndLine();
    EXPECT_THAT(recording.textWrites, ElementsAre(L"a??\tb??\t\x041F\r\n"));
}

TEST(ConsoleOnATerminal, BytesThatNoCodePageReadsAreMaskedAsTheyAreShown) {
    // A code page that no system has: each byte becomes the character of that number.
    Recording recording;
    Redirect redirect(Terminal(recording.ToText(12345, "\r\n")));
    PrintNarrowLine("\xD0\x9F");
    EXPECT_THAT(recording.textWrites, ElementsAre(L"\xD0?\r\n"));
}

TEST(ConsoleOnATerminal, WhatGoesElsewhereStaysAsItIs) {
    Recording recording;
    Redirect redirect(recording.ToBytes());
    PrintLine(L"a\x1B[2J\r\x9B\x7F");
    PrintNarrowLine("b\x1B[2J\r\x9B\x7F");
    EXPECT_THAT(recording.writes, ElementsAre("a\x1B[2J\r\xC2\x9B\x7F\n", "b\x1B[2J\r\x9B\x7F\n"));
}

}  // namespace
}  // namespace tavro::console
