#include "twin/answers/answering.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "console/console.h"
#include "console/redirect.h"
#include "console/secret.h"
#include "twin/platform/environment.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

namespace console = tavro::console;

// A console on which these questions are answered; message 5 is the prompt "Five".
class AnsweringTest : public testing::Test {
  protected:
    console::Device Device(const std::string& answers) {
        console::Device device;
        device.writeBytes = [this](std::string_view bytes) {
            output_ += bytes;
            return true;
        };
        device.keysFromTerminal = true;
        device.isTerminal = isTerminal_;
        return Answering(
            device,
            AnswerBook(tavrolib::ParseJson(R"({"format": 1, "answers": [)" + answers + "]}")),
            Run());
    }

    // A console that reads what is typed, up to its end.
    console::Device TypedDevice(const std::string& typed) {
        typed_ = typed;
        console::Device device;
        device.writeBytes = [](std::string_view) { return true; };
        device.readBytes = [this](char* buffer, std::size_t size) {
            const std::size_t count = typed_.copy(buffer, size);
            typed_.erase(0, count);
            return count;
        };
        return EndingWithInput(std::move(device), Run());
    }

    AskingRun Run() {
        return {.messageIn = [](std::wstring_view line) -> std::optional<std::uint32_t> {
                    return line.find(L"Five") == std::wstring_view::npos ? std::nullopt
                                                                         : std::optional(5U);
                },
                .trouble = [this](const std::string& sentence) { trouble_ = sentence; }};
    }

    // Asks for a secret that the only line of such a file should be, and returns the trouble.
    std::string TroubleWithFile(const std::string& content) {
        const console::Redirect redirect(
            Device(R"({"message": 5, "answers": [{"file": ")" + FileOf(content) + R"("}]})"));
        EXPECT_THROW(AskSecret(L"Five : "), console::CommandAbandoned) << content;
        return trouble_;
    }

    static std::string AskSecret(const wchar_t* prompt) {
        console::Print(prompt);
        std::string secret;
        console::ReadSecret(secret);
        return secret;
    }

    // A file in a folder that goes with the test.
    std::string FileOf(const std::string& content) {
        const std::filesystem::path path = folder_.Path() / "answer";
        std::ofstream(path, std::ios::binary) << content;
        const std::u8string name = path.generic_u8string();
        return {name.begin(), name.end()};
    }

    bool isTerminal_ = false;
    PrivateFolder folder_;
    std::string output_;
    std::string trouble_;
    std::string typed_;
};

std::string Ask(const wchar_t* prompt) {
    console::Print(prompt);
    return console::ReadLine();
}

TEST_F(AnsweringTest, QuestionsAreAnsweredByMessageOrByText) {
    const console::Redirect redirect(Device(
        R"({"message": 5, "answers": ["one", ""]}, {"prompt": "Fixed :", "answers": ["two"]})"));
    EXPECT_EQ(Ask(L"\n\tFive : "), "one");
    EXPECT_EQ(Ask(L"\n\t Fixed : "), "two");
    EXPECT_EQ(Ask(L"\n\tFive : "), "");
    EXPECT_EQ(trouble_, "");
    EXPECT_EQ(output_, "\n\tFive : \n\t Fixed : \n\tFive : ");
}

TEST_F(AnsweringTest, ATerminalShowsAnswersThatAreNoSecrets) {
    isTerminal_ = true;
    const std::string file = FileOf("from a file\n");
    const console::Redirect redirect(Device(R"({"message": 5, "answers": ["one", {"file": ")" +
                                            file + R"("}, {"file": ")" + file + "\"}]}"));
    Ask(L"Five : ");
    Ask(L"Five : ");
    AskSecret(L"Five : ");
    EXPECT_THROW(Ask(L"Other : "), console::CommandAbandoned);
    EXPECT_EQ(output_, "Five : one\nFive : \nFive : ***********\nOther : \n");
}

TEST_F(AnsweringTest, AQuestionWithoutAnAnswerEndsTheCommand) {
    const console::Redirect redirect(Device(R"({"message": 5, "answers": ["one"]})"));
    EXPECT_THROW(Ask(L"Other : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_, "question \"Other :\" has no answer");
    EXPECT_EQ(Ask(L"Five : "), "one");
    EXPECT_THROW(Ask(L"Five : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_, "question 5 \"Five :\" is asked again and has no further answer");
}

TEST_F(AnsweringTest, ARefusedAnswerEndsTheCommand) {
    const console::Redirect redirect(Device(R"({"message": 5, "answers": ["one", "two"]})"));
    Ask(L"Five : ");
    console::Print(L"Again : ");
    EXPECT_THROW(console::NoteRefusedAnswer(), console::CommandAbandoned);
    EXPECT_EQ(trouble_, "the answer to question 5 \"Five :\" was refused");
}

TEST_F(AnsweringTest, ASecretComesFromAFileOrTheEnvironment) {
    const std::string file = FileOf("only line\r\n");
    platform::SetVariable("TAVROHOST_TEST_SECRET", "of the environment");
    const console::Redirect redirect(
        Device(R"({"message": 5, "answers": [{"file": ")" + file +
               R"("}, {"environment": "TAVROHOST_TEST_SECRET"}, "of the document"]})"));
    EXPECT_EQ(AskSecret(L"Five : "), "only line");
    EXPECT_EQ(AskSecret(L"Five : "), "of the environment");
    EXPECT_THROW(AskSecret(L"Five : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_,
              "question 5 \"Five :\" asks for a secret, which has to come from a file or the "
              "environment");
    EXPECT_EQ(output_.find("line"), std::string::npos);
    platform::UnsetVariable("TAVROHOST_TEST_SECRET");
}

TEST_F(AnsweringTest, WhatASecretShouldComeFromHasToBeThere) {
    const console::Redirect redirect(Device(
        R"({"message": 5, "answers": [{"file": "/no such/file"}, {"environment": "NO_SUCH_NAME"}]})"));
    EXPECT_THROW(AskSecret(L"Five : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_, "the answer to question 5 \"Five :\": /no such/file cannot be read");
    EXPECT_THROW(AskSecret(L"Five : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_,
              "the answer to question 5 \"Five :\": there is no environment variable NO_SUCH_NAME");
}

// What else could be typed would answer other questions, or take back what stands before it.
TEST_F(AnsweringTest, AFileOrAVariableHoldsOneLineThatCanBeTyped) {
    const std::string start = "the answer to question 5 \"Five :\": ";
    const std::string end = " must hold one line without control characters, of at most 4000 bytes";
    const std::string file = FileOf("");
    for (const char* const content :
         {"one\ntwo", "one\n\n", "one\r\r\n", "one\b", "a\tb", "\x7F", "\x1B[2J"}) {
        EXPECT_EQ(TroubleWithFile(content), start + file + end);
    }
    EXPECT_EQ(TroubleWithFile(std::string("a\0b", 3)), start + file + end);
    EXPECT_EQ(TroubleWithFile(std::string(4001, 'x') + "\n"), start + file + end);
    EXPECT_EQ(TroubleWithFile(std::string(9000, 'x')), start + file + end);
    platform::SetVariable("TAVROHOST_TEST_SECRET", "one\ntwo");
    const console::Redirect redirect(
        Device(R"({"message": 5, "answers": [{"environment": "TAVROHOST_TEST_SECRET"}]})"));
    EXPECT_THROW(AskSecret(L"Five : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_, start + "the environment variable TAVROHOST_TEST_SECRET" + end);
    platform::UnsetVariable("TAVROHOST_TEST_SECRET");
}

TEST_F(AnsweringTest, TheLongestLineOfAFileIsAnAnswer) {
    const std::string longest(4000, 'x');
    const console::Redirect redirect(
        Device(R"({"message": 5, "answers": [{"file": ")" + FileOf(longest + "\r\n") + R"("}]})"));
    EXPECT_EQ(AskSecret(L"Five : "), longest);
}

TEST_F(AnsweringTest, AFolderIsNoAnswer) {
    const std::u8string name = folder_.Path().generic_u8string();
    const std::string folder(name.begin(), name.end());
    const console::Redirect redirect(
        Device(R"({"message": 5, "answers": [{"file": ")" + folder + R"("}]})"));
    EXPECT_THROW(AskSecret(L"Five : "), console::CommandAbandoned);
    EXPECT_EQ(trouble_, "the answer to question 5 \"Five :\": " + folder + " cannot be read");
}

TEST_F(AnsweringTest, ARefusedAnswerEndsTheCommandOnceInputHasEnded) {
    const console::Redirect redirect(TypedDevice("one\ntwo\n"));
    EXPECT_EQ(Ask(L"Other : "), "one");
    console::NoteRefusedAnswer();
    EXPECT_EQ(Ask(L"\nFive : "), "two");
    console::NoteRefusedAnswer();
    EXPECT_EQ(Ask(L"\nFive : "), "");
    EXPECT_EQ(trouble_, "");
    EXPECT_THROW(console::NoteRefusedAnswer(), console::CommandAbandoned);
    EXPECT_EQ(trouble_,
              "the answer to question 5 \"Five :\" was refused, and standard input has ended");
}

TEST_F(AnsweringTest, AnAnswerWithoutALineEndIsTheLast) {
    const console::Redirect redirect(TypedDevice("one"));
    EXPECT_EQ(Ask(L"Five : "), "one");
    EXPECT_THROW(console::NoteRefusedAnswer(), console::CommandAbandoned);
    EXPECT_EQ(trouble_,
              "the answer to question 5 \"Five :\" was refused, and standard input has ended");
}

TEST_F(AnsweringTest, AnAnswerIsReadInWhateverPieces) {
    const std::string longest(4000, 'x');
    const console::Redirect redirect(Device(R"({"message": 5, "answers": ["yes", "no", ")" +
                                            longest +
                                            R"("]}, {"prompt": "List", "answers": ["3,4"]})"));
    console::Print(L"Five : ");
    EXPECT_EQ(console::ReadLineLeavingLineEnd(), "yes");
    console::Print(L"List");
    console::SkipCharacter();
    EXPECT_EQ(console::ReadLine(), "3,4");
    console::Print(L"Five : ");
    EXPECT_EQ(console::ReadCharacter(), 'n');
    console::DropRestOfLine();
    EXPECT_EQ(Ask(L"Five : "), longest);
}

}  // namespace
}  // namespace tavrohost
