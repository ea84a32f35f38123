// What a device learns that gives the answers itself.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "console/console.h"
#include "console/secret.h"
#include "recording_device.h"

namespace tavro::console {
namespace {

using ::testing::ElementsAre;

struct Question {
    std::wstring line;
    bool isSecret;

    bool operator==(const Question&) const = default;
};

// Gives one answer for each question, and keeps the questions.
class AnswersTest : public testing::Test {
  protected:
    Device Answering(Device device) {
        device.asked = [this](std::wstring_view line, bool isSecret) {
            questions_.push_back({std::wstring(line), isSecret});
        };
        device.refused = [this] { ++refusals_; };
        return device;
    }

    Recording recording_;
    std::vector<Question> questions_;
    int refusals_ = 0;
};

TEST_F(AnswersTest, TheOpenLineIsToldWhenItIsAsked) {
    recording_.input = {"first\n", "second\n"};
    const Redirect redirect(Answering(recording_.ToBytes()));
    Print(L"a line\n\tName ");
    PrintNarrow("of it : ");
    EXPECT_EQ(ReadLine(), "first");
    Print(L"Further : ");
    EXPECT_EQ(ReadLine(), "second");
    EXPECT_THAT(questions_,
                ElementsAre(Question{L"\tName of it : ", false}, Question{L"Further : ", false}));
}

TEST_F(AnswersTest, TheLineIsToldAsTextWhateverTheOutputHolds) {
    constexpr unsigned WesternCodePage = 1252;
    recording_.input = {"x\n"};
    const Redirect redirect(Answering(recording_.ToBytes(WesternCodePage)));
    Print(L"\x540D\x524D : ");
    ReadLine();
    EXPECT_THAT(questions_, ElementsAre(Question{L"\x540D\x524D : ", false}));
}

TEST_F(AnswersTest, AConsoleTellsNarrowTextOnce) {
    recording_.input = {"x\n"};
    const Redirect redirect(Answering(recording_.ToText(platform::Utf8CodePage, "\n")));
    PrintNarrow("narrow : ");
    ReadLine();
    EXPECT_THAT(questions_, ElementsAre(Question{L"narrow : ", false}));
}

TEST_F(AnswersTest, WhatIsLeftOfAnAnswerIsReadBeforeTheNextQuestion) {
    recording_.input = {"yes\n", "list\n"};
    const Redirect redirect(Answering(recording_.ToBytes()));
    Print(L"Change : ");
    EXPECT_EQ(ReadLineLeavingLineEnd(), "yes");
    Print(L"List : ");
    SkipCharacter();
    EXPECT_EQ(ReadLine(), "list");
    EXPECT_THAT(questions_,
                ElementsAre(Question{L"Change : ", false}, Question{L"List : ", false}));
}

TEST_F(AnswersTest, ASecretIsAskedForAsOne) {
    recording_.input = {"hidden\n", "shown\n"};
    const Redirect redirect(Answering(recording_.ToBytes()));
    Print(L"Secret : ");
    std::string secret;
    ReadSecret(secret);
    EXPECT_EQ(secret, "hidden");
    Print(L"Name : ");
    EXPECT_EQ(ReadLine(), "shown");
    EXPECT_THAT(questions_, ElementsAre(Question{L"Secret : ", true}, Question{L"Name : ", false}));
}

TEST_F(AnswersTest, WhoeverIsAskedMayAbandonTheCommand) {
    Device device = recording_.ToBytes();
    device.asked = [](std::wstring_view, bool) { throw CommandAbandoned("no answer"); };
    const Redirect redirect(std::move(device));
    Print(L"Secret : ");
    std::string secret = "former";
    EXPECT_THROW(ReadSecret(secret), CommandAbandoned);
    EXPECT_EQ(secret, "");
    // What follows is no secret.
    Print(L"Name : ");
    EXPECT_THROW(ReadLine(), CommandAbandoned);
    EXPECT_THAT(recording_.writes, ElementsAre("Secret : ", "Name : "));
}

TEST_F(AnswersTest, ARefusalIsToldAfterWhatWasShownOfIt) {
    std::size_t writesBefore = 0;
    Device device = recording_.ToBytes();
    device.refused = [&] {
        ++refusals_;
        writesBefore = recording_.writes.size();
    };
    const Redirect redirect(std::move(device));
    Print(L"Again : ");
    NoteRefusedAnswer();
    EXPECT_EQ(refusals_, 1);
    EXPECT_EQ(writesBefore, 1U);
}

TEST(NoteRefusedAnswer, IsNothingWhereSomebodyTypes) {
    const MemoryConsole console("x\n");
    Print(L"Again : ");
    NoteRefusedAnswer();
    EXPECT_EQ(console.Output(), "");
}

}  // namespace
}  // namespace tavro::console
