#include "cli/questions.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "console/redirect.h"

namespace tavro {
namespace {

using console::MemoryConsole;

// The messages of the library beside this program are their numbers; any would do here.
constexpr MessageId Prompt = MessageId::AskConfirmation;
constexpr MessageId Refused = MessageId::ConfirmationRefused;
constexpr Question Noticed = {.prompt = Prompt, .refusal = Refusal::Notice(Refused)};
const std::string PromptShown = "\n\t#" + std::to_string(static_cast<int>(Prompt)) + " : ";
const std::string RefusedShown = "#" + std::to_string(static_cast<int>(Refused));
const std::string NoticeShown = "\n\t\t" + RefusedShown + "\n";

std::optional<int> OneOrTwo(const std::string& line) {
    if (line == "1") {
        return 1;
    }
    if (line == "2") {
        return 2;
    }
    return std::nullopt;
}

TEST(AskUntil, TheFirstGoodAnswerEndsIt) {
    MemoryConsole console("2\n1\n");
    EXPECT_EQ(AskUntil(Noticed, OneOrTwo), 2);
    EXPECT_EQ(console.Output(), PromptShown);
    EXPECT_EQ(console::ReadLine(), "1");
}

TEST(AskUntil, EveryWrongAnswerIsRefusedAndAskedAgain) {
    MemoryConsole console("\n 1\n3\n1\n");
    EXPECT_EQ(AskUntil(Noticed, OneOrTwo), 1);
    const std::string refused = NoticeShown + PromptShown;
    EXPECT_EQ(console.Output(), PromptShown + refused + refused + refused);
}

TEST(AskUntil, ARetryPromptReplacesTheQuestionsOwn) {
    MemoryConsole console("x\ny\n2\n");
    EXPECT_EQ(AskUntil({Prompt, Refusal::RetryPrompt(Refused), "prefix "}, OneOrTwo), 2);
    const std::string retryPrompt = "\n\t" + RefusedShown + " : ";
    const std::string prompt = "\n\tprefix " + PromptShown.substr(2);
    EXPECT_EQ(console.Output(), prompt + retryPrompt + retryPrompt);
}

TEST(AskUntil, ASpacedNoticeHasAnEmptyLineInFront) {
    MemoryConsole console("x\n2\n");
    EXPECT_EQ(AskUntil({Prompt, Refusal::SpacedNotice(Refused)}, OneOrTwo), 2);
    EXPECT_EQ(console.Output(), PromptShown + "\n" + NoticeShown + PromptShown);
}

TEST(AskUntil, ThePrefixStandsInFrontOfEachPrompt) {
    MemoryConsole console("x\n2\n");
    EXPECT_EQ(AskUntil({Prompt, Refusal::Notice(Refused), "[PF1]"}, OneOrTwo), 2);
    const std::string prompt = "\n\t[PF1]" + PromptShown.substr(2);
    EXPECT_EQ(console.Output(), prompt + NoticeShown + prompt);
}

TEST(AskUntil, AnAcceptedLineIsTheResultWhereAcceptIsAPredicate) {
    MemoryConsole console("x\nlong enough\n");
    const std::string answer =
        AskUntil(Noticed, [](const std::string& line) { return line.size() > 5; });
    EXPECT_EQ(answer, "long enough");
}

TEST(AskUntil, AFalseValueIsAValue) {
    MemoryConsole console("n\n");
    const bool answer = AskUntil(Noticed, [](const std::string& line) -> std::optional<bool> {
        return line == "n" ? std::optional<bool>(false) : std::nullopt;
    });
    EXPECT_FALSE(answer);
}

TEST(AskUntil, WhatAPointerLeadsToIsAValue) {
    MemoryConsole console("x\n1\n");
    static constexpr int One = 1;
    const int answer =
        AskUntil(Noticed, [](const std::string& line) { return line == "1" ? &One : nullptr; });
    EXPECT_EQ(answer, 1);
}

TEST(AskUntil, LostOutputEndsTheDialogue) {
    std::size_t writesLeft = 5;
    console::Device device;
    device.writeBytes = [&writesLeft](std::string_view) { return writesLeft-- > 1; };
    device.readBytes = [](char*, std::size_t) { return std::size_t{0}; };
    console::Redirect redirect(device);
    int questionsLeft = 100;
    const auto acceptAtLast = [&](const std::string&) { return --questionsLeft == 0; };
    EXPECT_THROW(AskUntil(Noticed, acceptAtLast), console::OutputLost);
}

TEST(AskLine, TakesWhateverIsTyped) {
    MemoryConsole console(" any line \nnext\n");
    EXPECT_EQ(AskLine(Prompt), " any line ");
    EXPECT_EQ(console.Output(), PromptShown);
}

TEST(AskNumber, TakesDigitsUpToTheMaximumAsTheyAreTyped) {
    MemoryConsole console("\n-1\n1x\n 1\n61\n99999999999\n060\n0\n60\n");
    EXPECT_EQ(AskNumber(Noticed, 60), "060");
    std::string shown = PromptShown;
    for (int refused = 0; refused < 6; ++refused) {
        shown += NoticeShown + PromptShown;
    }
    EXPECT_EQ(console.Output(), shown);
    EXPECT_EQ(AskNumber(Noticed, 60), "0");
    EXPECT_EQ(AskNumber(Noticed, 60), "60");
}

TEST(AskDigits, TakesDigitsAndNothing) {
    MemoryConsole console("1a\n-1\n3260\n\n");
    EXPECT_EQ(AskDigits(Noticed), "3260");
    EXPECT_EQ(AskDigits(Noticed), "");
    EXPECT_EQ(console.Output(),
              PromptShown + NoticeShown + PromptShown + NoticeShown + PromptShown + PromptShown);
}

TEST(AskIPv4Address, AsksAgainByThePromptOfAllAddresses) {
    MemoryConsole console("\n192.0.2.256\n2001:db8::1\n192.0.2.1\n");
    EXPECT_EQ(AskIPv4Address(Prompt), "192.0.2.1");
    const std::string retryPrompt = "\n\t#28673 : ";
    EXPECT_EQ(console.Output(), PromptShown + retryPrompt + retryPrompt + retryPrompt);
}

constexpr Choice Choices[] = {{"y", "Enabled"}, {"Y", "Enabled"}, {"n", "Disabled"}};

TEST(MeaningOf, AnswersAreComparedExactly) {
    EXPECT_EQ(MeaningOf("y", Choices), "Enabled");
    EXPECT_EQ(MeaningOf("Y", Choices), "Enabled");
    EXPECT_EQ(MeaningOf("n", Choices), "Disabled");
    for (const char* answer : {"", "N", "yes", "y ", " y"}) {
        EXPECT_EQ(MeaningOf(answer, Choices), std::nullopt) << answer;
    }
}

TEST(AskChoice, GivesWhatTheAnswerStandsFor) {
    MemoryConsole console("N\nEnabled\nn\ny\n");
    EXPECT_EQ(AskChoice(Noticed, Choices), "Disabled");
    EXPECT_EQ(AskChoice(Noticed, Choices), "Enabled");
    EXPECT_EQ(console.Output(),
              PromptShown + NoticeShown + PromptShown + NoticeShown + PromptShown + PromptShown);
}

TEST(YesOrNo, TakesOneLetterInEitherCase) {
    EXPECT_EQ(YesOrNo("y"), true);
    EXPECT_EQ(YesOrNo("Y"), true);
    EXPECT_EQ(YesOrNo("n"), false);
    EXPECT_EQ(YesOrNo("N"), false);
}

TEST(YesOrNo, AnythingElseIsNoAnswer) {
    for (const char* answer : {"", "yes", "no", " y", "y ", "1", "j"}) {
        EXPECT_EQ(YesOrNo(answer), std::nullopt) << answer;
    }
}

TEST(AskDecision, AsksUntilTheAnswerIsYesOrNo) {
    MemoryConsole console("yes\ny\nN\n");
    EXPECT_TRUE(AskDecision(Noticed));
    EXPECT_FALSE(AskDecision(Noticed));
    EXPECT_EQ(console.Output(), PromptShown + NoticeShown + PromptShown + PromptShown);
}

TEST(AskYesNo, AsksOnlyWhereTheAnswerIsNone) {
    MemoryConsole console("x\nn\n");
    EXPECT_TRUE(AskYesNo("Y"));
    EXPECT_FALSE(AskYesNo("n"));
    EXPECT_EQ(console.Output(), "");
    EXPECT_FALSE(AskYesNo("maybe"));
    EXPECT_EQ(console.Output(), "\n\t#28690 : \n\t#28690 : ");
}

TEST(AskSwitch, NamesItsState) {
    MemoryConsole console("Y\n1\nn\n");
    EXPECT_EQ(AskSwitch(Noticed), "Enabled");
    EXPECT_EQ(AskSwitch(Noticed), "Disabled");
    EXPECT_EQ(console.Output(), PromptShown + PromptShown + NoticeShown + PromptShown);
}

TEST(AskSecret, RepeatsUntilTheSecretIsAccepted) {
    MemoryConsole console("short\ntwelve chars\n");
    std::string secret;
    AskSecret(secret, {Prompt, Refusal::RetryPrompt(Refused)},
              [](const std::string& typed) { return typed.size() >= 12; });
    EXPECT_EQ(secret, "twelve chars");
    EXPECT_EQ(console.Output(), PromptShown + "*****\n\n\t" + RefusedShown + " : ************\n");
}

TEST(AskConfirmedSecret, AsksForBothAgainWhileTheyDiffer) {
    MemoryConsole console("one\ntwo\nthree\nthree\n");
    std::string secret;
    AskConfirmedSecret(secret, Prompt, Refused);
    EXPECT_EQ(secret, "three");
    const std::string confirmation = "\n\t" + RefusedShown + " : ";
    EXPECT_EQ(console.Output(), PromptShown + "***\n" + confirmation + "***\n" + PromptShown +
                                    "*****\n" + confirmation + "*****\n");
}

}  // namespace
}  // namespace tavro
