#include "console/question.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "console/redirect.h"

namespace tavro::console {
namespace {

void Prompt() {
    Print(L"\n\tWhich : ");
}
void RetryPrompt() {
    Print(L"\n\tAgain : ");
}
void Refuse() {
    PrintLine(L"no");
}

std::optional<int> OneOrTwo(const std::string& line) {
    if (line == "1") {
        return 1;
    }
    if (line == "2") {
        return 2;
    }
    return std::nullopt;
}

TEST(Ask, TheFirstGoodAnswerEndsIt) {
    MemoryConsole console("2\n1\n");
    EXPECT_EQ(Ask(Prompt, OneOrTwo, Refuse), 2);
    EXPECT_EQ(console.Output(), "\n\tWhich : ");
    EXPECT_EQ(ReadLine(), "1");
}

TEST(Ask, EveryWrongAnswerIsRefusedAndAskedAgain) {
    MemoryConsole console("\n 1\n3\n1\n");
    EXPECT_EQ(Ask(Prompt, OneOrTwo, Refuse), 1);
    EXPECT_EQ(console.Output(),
              "\n\tWhich : no\n"
              "\n\tWhich : no\n"
              "\n\tWhich : no\n"
              "\n\tWhich : ");
}

TEST(Ask, AnAcceptedLineIsTheResultWhereAcceptIsAPredicate) {
    MemoryConsole console("x\nlong enough\n");
    const std::string answer = Ask(
        Prompt, [](const std::string& line) { return line.size() > 5; }, Refuse);
    EXPECT_EQ(answer, "long enough");
}

TEST(Ask, AFalseValueIsAValue) {
    MemoryConsole console("n\n");
    const bool answer = Ask(
        Prompt,
        [](const std::string& line) -> std::optional<bool> {
            return line == "n" ? std::optional<bool>(false) : std::nullopt;
        },
        Refuse);
    EXPECT_FALSE(answer);
}

TEST(AskWithRetryPrompt, TheRetryPromptReplacesTheFirst) {
    MemoryConsole console("x\ny\n2\n");
    EXPECT_EQ(AskWithRetryPrompt(Prompt, RetryPrompt, OneOrTwo), 2);
    EXPECT_EQ(console.Output(), "\n\tWhich : \n\tAgain : \n\tAgain : ");
}

TEST(AskSecret, RepeatsUntilTheSecretIsAccepted) {
    MemoryConsole console("short\ntwelve chars\n");
    std::string secret;
    AskSecret(secret, Prompt, RetryPrompt,
              [](const std::string& typed) { return typed.size() >= 12; });
    EXPECT_EQ(secret, "twelve chars");
    EXPECT_EQ(console.Output(), "\n\tWhich : *****\n\n\tAgain : ************\n");
}

TEST(Ask, LostOutputEndsTheDialogue) {
    std::size_t writesLeft = 5;
    Device device;
    device.writeBytes = [&writesLeft](std::string_view) { return writesLeft-- > 1; };
    device.readBytes = [](char*, std::size_t) { return std::size_t{0}; };
    Redirect redirect(device);
    EXPECT_THROW(Ask(Prompt, OneOrTwo, Refuse), OutputLost);
}

}  // namespace
}  // namespace tavro::console
