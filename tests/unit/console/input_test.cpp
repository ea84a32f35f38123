#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "console/console.h"
#include "recording_device.h"

namespace tavro::console {
namespace {

using ::testing::ElementsAre;

TEST(ReadLine, LosesTheLineEndAndOneCarriageReturnBeforeIt) {
    MemoryConsole console("plain\ndos\r\ntwo\r\r\nin\rside\n");
    EXPECT_EQ(ReadLine(), "plain");
    EXPECT_EQ(ReadLine(), "dos");
    EXPECT_EQ(ReadLine(), "two\r");
    EXPECT_EQ(ReadLine(), "in\rside");
}

TEST(ReadLine, EmptyLines) {
    MemoryConsole console("\n\r\nx\n");
    EXPECT_EQ(ReadLine(), "");
    EXPECT_EQ(ReadLine(), "");
    EXPECT_EQ(ReadLine(), "x");
}

TEST(ReadLine, TheEndOfInputReadsAsEmptyLinesForEver) {
    MemoryConsole console("last");
    EXPECT_EQ(ReadLine(), "last");
    EXPECT_EQ(ReadLine(), "");
    EXPECT_EQ(ReadLine(), "");
}

TEST(ReadLine, AQuestionWithoutEndThatShowsNothingIsGivenUp) {
    MemoryConsole console("");
    EXPECT_THROW(
        {
            for (int i = 0; i < 2000; ++i) {
                ReadLine();
            }
        },
        OutputLost);
}

TEST(ReadLine, AQuestionWithoutEndThatIsShownIsAskedForEver) {
    MemoryConsole console("");
    for (int i = 0; i < 2000; ++i) {
        Print(L"?");
        EXPECT_EQ(ReadLine(), "");
    }
}

TEST(ReadLine, TheEndOfInputEndsALineLikeALineEnd) {
    MemoryConsole console("last\r");
    EXPECT_EQ(ReadLine(), "last");
}

TEST(ReadLine, KeepsBlanksControlAndHighBytes) {
    MemoryConsole console(std::string(" \t a\0b \x1A\xFF \n", 11));
    EXPECT_EQ(ReadLine(), std::string(" \t a\0b \x1A\xFF ", 10));
}

TEST(ReadLine, ALineMayComeInPiecesAndBeLongerThanTheBuffer) {
    const std::string piece(4000, 'x');
    Recording recording;
    recording.input = {piece, piece, piece + "\r", "\nnext", "\n"};
    Redirect redirect(recording.ToBytes());
    EXPECT_EQ(ReadLine(), piece + piece + piece);
    EXPECT_EQ(ReadLine(), "next");
}

TEST(ReadLine, ATerminalMayGoOnAfterAnEndOfInput) {
    Recording recording;
    recording.input = {"", "more\n", "cut", "", "rest\n"};
    Redirect redirect(recording.ToBytes());
    EXPECT_EQ(ReadLine(), "");
    EXPECT_EQ(ReadLine(), "more");
    EXPECT_EQ(ReadLine(), "cut");
    EXPECT_EQ(ReadLine(), "rest");
}

TEST(ReadLine, WritesThePromptBeforeItWaits) {
    Recording recording;
    recording.input = {"answer\n"};
    Redirect redirect(recording.ToBytes());
    Print(L"name : ");
    EXPECT_EQ(ReadLine(), "answer");
    EXPECT_THAT(recording.writesBeforeRead, ElementsAre("name : "));
}

TEST(ReadLine, DoesNotWaitForMoreThanTheLine) {
    Recording recording;
    recording.input = {"y\n", "next\n"};
    Redirect redirect(recording.ToBytes());
    EXPECT_EQ(ReadLine(), "y");
    EXPECT_EQ(recording.nextInput, 1U);
}

TEST(ReadLineLeavingLineEnd, OneSkippedCharacterIsTheLineEnd) {
    MemoryConsole console("y\n3,4\ny\r\n5,6\n");
    EXPECT_EQ(ReadLineLeavingLineEnd(), "y");
    SkipCharacter();
    EXPECT_EQ(ReadLine(), "3,4");
    EXPECT_EQ(ReadLineLeavingLineEnd(), "y");
    SkipCharacter();
    EXPECT_EQ(ReadLine(), "5,6");
}

TEST(ReadLineLeavingLineEnd, WithoutASkipTheLineEndIsReadNext) {
    MemoryConsole console("n\nnext\n");
    EXPECT_EQ(ReadLineLeavingLineEnd(), "n");
    EXPECT_EQ(ReadLine(), "");
    EXPECT_EQ(ReadLine(), "next");
}

TEST(ReadLineLeavingLineEnd, AnEndOfInputThatEndedTheLineIsWhatIsSkipped) {
    Recording recording;
    recording.input = {"y", "", "3,4\n"};
    Redirect redirect(recording.ToBytes());
    EXPECT_EQ(ReadLineLeavingLineEnd(), "y");
    SkipCharacter();
    EXPECT_EQ(ReadLine(), "3,4");
}

TEST(ReadCharacter, ReadsOneAtATime) {
    MemoryConsole console("ab\nc\r\n\rd");
    EXPECT_EQ(ReadCharacter(), 'a');
    EXPECT_EQ(ReadCharacter(), 'b');
    EXPECT_EQ(ReadCharacter(), '\n');
    EXPECT_EQ(ReadCharacter(), 'c');
    EXPECT_EQ(ReadCharacter(), '\n');
    EXPECT_EQ(ReadCharacter(), '\r');
    EXPECT_EQ(ReadCharacter(), 'd');
    EXPECT_EQ(ReadCharacter(), '\0');
    EXPECT_EQ(ReadCharacter(), '\0');
}

TEST(DropRestOfLine, TheNextReadBeginsWithTheNextLine) {
    MemoryConsole console("yes please\nnext\n");
    EXPECT_EQ(ReadCharacter(), 'y');
    DropRestOfLine();
    EXPECT_EQ(ReadLine(), "next");
}

TEST(SkipCharacter, WritesThePromptBeforeItWaits) {
    Recording recording;
    recording.input = {"x"};
    Redirect redirect(recording.ToBytes());
    Print(L"key");
    SkipCharacter();
    EXPECT_THAT(recording.writesBeforeRead, ElementsAre("key"));
}

}  // namespace
}  // namespace tavro::console
