#include "console/secret.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "console/console.h"
#include "console/state.h"
#include "console/wipe.h"
#include "recording_device.h"

namespace tavro::console {
namespace {

using ::testing::ElementsAre;

std::string Secret() {
    std::string text = "former content";
    ReadSecret(text);
    return text;
}

TEST(ReadSecret, EveryKeyIsAStarAndEnterIsALineEnd) {
    MemoryConsole console("abc\n");
    EXPECT_EQ(Secret(), "abc");
    EXPECT_EQ(console.Output(), "***\n");
}

TEST(ReadSecret, EachStarAppearsAtOnce) {
    Recording recording;
    recording.input = {"ab\n"};
    Redirect redirect(recording.ToBytes());
    Print(L"secret : ");
    EXPECT_EQ(Secret(), "ab");
    EXPECT_THAT(recording.writes, ElementsAre("secret : ", "*", "*", "\n"));
    EXPECT_THAT(recording.writesBeforeRead, ElementsAre("secret : "));
}

TEST(ReadSecret, AnImmediateEnterIsAnEmptySecret) {
    MemoryConsole console("\n");
    EXPECT_EQ(Secret(), "");
    EXPECT_EQ(console.Output(), "\n");
}

TEST(ReadSecret, CarriageReturnAloneEndsIt) {
    MemoryConsole console("ab\rcd\r");
    EXPECT_EQ(Secret(), "ab");
    EXPECT_EQ(Secret(), "cd");
}

TEST(ReadSecret, TheLineFeedAfterACarriageReturnIsSwallowed) {
    MemoryConsole console("ab\r\ncd\r\n\r\nline\n");
    EXPECT_EQ(Secret(), "ab");
    EXPECT_EQ(Secret(), "cd");
    EXPECT_EQ(Secret(), "");
    EXPECT_EQ(ReadLine(), "line");
}

TEST(ReadSecret, OnlyOneLineFeedIsSwallowed) {
    MemoryConsole console("ab\r\n\ncd\n");
    EXPECT_EQ(Secret(), "ab");
    EXPECT_EQ(Secret(), "");
    EXPECT_EQ(Secret(), "cd");
}

TEST(ReadSecret, DoesNotWaitForTheLineFeedAfterACarriageReturn) {
    Recording recording;
    recording.input = {"ab\r", "\nnext\n"};
    Redirect redirect(recording.ToBytes());
    EXPECT_EQ(Secret(), "ab");
    EXPECT_EQ(recording.nextInput, 1U);
    EXPECT_EQ(ReadLine(), "next");
}

TEST(ReadSecret, TheEndOfInputEndsItLikeEnter) {
    MemoryConsole console("abc");
    EXPECT_EQ(Secret(), "abc");
    EXPECT_EQ(Secret(), "");
    EXPECT_EQ(console.Output(), "***\n\n");
}

TEST(ReadSecret, BackspaceTakesTheLastCharacterBack) {
    MemoryConsole console("abx\bc\n");
    EXPECT_EQ(Secret(), "abc");
    EXPECT_EQ(console.Output(), "***\b \b*\n");
}

TEST(ReadSecret, BackspaceOnNothingPrintsNothing) {
    MemoryConsole console("\b\ba\b\b\bb\n");
    EXPECT_EQ(Secret(), "b");
    EXPECT_EQ(console.Output(), "*\b \b*\n");
}

TEST(ReadSecret, OtherControlAndHighBytesArePartOfIt) {
    MemoryConsole console("\x01\x1A\t \xFF\n");
    EXPECT_EQ(Secret(), "\x01\x1A\t \xFF");
    EXPECT_EQ(console.Output(), "*****\n");
}

TEST(ReadSecret, LongSecretsArriveWhole) {
    const std::string secret = std::string(5000, 's') + "end";
    MemoryConsole console(secret + "\n");
    EXPECT_EQ(Secret(), secret);
}

TEST(ReadSecret, LinesAndSecretsShareTheInput) {
    MemoryConsole console("name\nsecret\nother\n");
    EXPECT_EQ(ReadLine(), "name");
    EXPECT_EQ(Secret(), "secret");
    EXPECT_EQ(ReadLine(), "other");
}

TEST(ReadSecret, LeavesNothingInTheInputBuffer) {
    MemoryConsole console("topsecret\n");
    EXPECT_EQ(Secret(), "topsecret");
    const State& state = Current();
    EXPECT_TRUE(std::all_of(state.input.begin(), state.input.end(),
                            [](char byte) { return byte == '\0'; }));
}

TEST(ReadSecret, LostOutputWipesWhatWasRead) {
    Recording recording;
    recording.input = {"topsecret\n"};
    recording.writesLeft = 3;
    Redirect redirect(recording.ToBytes());
    std::string secret;
    EXPECT_THROW(ReadSecret(secret), OutputLost);
    EXPECT_EQ(secret, "");
    EXPECT_EQ(std::string(secret.data(), 3), std::string(3, '\0'));
}

TEST(ReadSecret, LostOutputIsFoundBeforeTheFirstKey) {
    Recording recording;
    recording.input = {"topsecret\n"};
    recording.writesLeft = 0;
    Redirect redirect(recording.ToBytes());
    std::string secret;
    Print(L"prompt : ");
    EXPECT_THROW(ReadSecret(secret), OutputLost);
    EXPECT_EQ(recording.nextInput, 0U);
}

TEST(ReadSecret, ASecretThatWasReadIsKeptWhenItsLineEndIsLost) {
    Recording recording;
    recording.input = {"abc\n"};
    recording.writesLeft = 3;
    Redirect redirect(recording.ToBytes());
    EXPECT_EQ(Secret(), "abc");
    EXPECT_TRUE(OutputIsLost());
}

TEST(ReadSecret, BackspaceSteersATerminal) {
    Recording recording;
    recording.input = {"abx\bc\n"};
    Device device = recording.ToBytes();
    device.isTerminal = true;
    Redirect redirect(device);
    EXPECT_EQ(Secret(), "abc");
    EXPECT_THAT(recording.writes, ElementsAre("*", "*", "*", "\b \b", "*", "\n"));
}

TEST(WipeSecret, ClearsTheWholeStorage) {
    std::string secret(100, 's');
    secret.resize(50);
    const char* const storage = secret.data();
    // The end of the text aside, the other half is still there.
    ASSERT_EQ(std::string(storage + 51, 49), std::string(49, 's'));
    WipeSecret(secret);
    EXPECT_EQ(secret, "");
    ASSERT_EQ(secret.data(), storage);
    EXPECT_EQ(std::string(storage, 100), std::string(100, '\0'));
}

TEST(WipeSecret, AnEmptyTextStaysEmpty) {
    std::string secret;
    WipeSecret(secret);
    EXPECT_EQ(secret, "");
}

TEST(SecretGuard, WipesOnEveryWayOut) {
    std::string secret = "topsecret";
    try {
        SecretGuard guard(secret);
        throw OutputLost();
    } catch (const OutputLost&) {
        EXPECT_EQ(secret, "");
    }
    EXPECT_EQ(std::string(secret.data(), 9), std::string(9, '\0'));
}

}  // namespace
}  // namespace tavro::console
