#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

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

TEST(ConsoleOutput, ClosedOutputIsReportedAndStaysClosed) {
    Recording recording;
    recording.writesLeft = 1;
    Redirect redirect(recording.ToBytes());
    PrintLine(L"arrives");
    Print(L"lost");
    EXPECT_THROW(EndLine(), OutputClosed);
    recording.writesLeft = 10;
    EXPECT_THROW(PrintLine(L"too late"), OutputClosed);
    EXPECT_THAT(recording.writes, ElementsAre("arrives\n"));
}

TEST(ConsoleOutput, AfterClosedOutputNothingIsPending) {
    Recording recording;
    recording.writesLeft = 0;
    Redirect redirect(recording.ToText(1252, "\r\n"));
    EXPECT_THROW(PrintNarrowLine("lost"), OutputClosed);
    EXPECT_NO_THROW(Flush());
}

TEST(ConsoleOutput, ReadingWithClosedOutputIsReportedBeforeAnythingIsRead) {
    Recording recording;
    recording.writesLeft = 0;
    recording.input = {"answer\n"};
    Redirect redirect(recording.ToBytes());
    Print(L"prompt : ");
    EXPECT_THROW(ReadLine(), OutputClosed);
    EXPECT_EQ(recording.nextInput, 0U);
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

}  // namespace
}  // namespace tavro::console
