#include "cli/login_options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/questions.h"
#include "console/redirect.h"
#include "mgmt/record_secrets.h"

namespace tavro {
namespace {

using tavroapi::LoginOptions;

// What the prompts say depends on whether a management library lies beside the test program, so the
// answers are looked at and not the screen.
LoginOptions ParseOptions(std::vector<const char*> words, const std::string& typed = "") {
    console::MemoryConsole memory(typed);
    LoginOptions options;
    ResetLoginOptions(options);
    EXPECT_EQ(ParseLoginOptions(options, words), 0);
    return options;
}

TEST(LoginOptions, Defaults) {
    LoginOptions options;
    options.targetSecret = "left over";
    ResetLoginOptions(options);
    EXPECT_EQ(options.multipath, "Yes");
    EXPECT_EQ(options.headerDigest, "No");
    EXPECT_EQ(options.dataDigest, "No");
    EXPECT_EQ(options.authentication, "None");
    EXPECT_EQ(options.targetChapName, "");
    EXPECT_EQ(options.targetSecret, "");
    EXPECT_EQ(options.initiatorChapName, "");
    EXPECT_EQ(options.initiatorSecret, "");
}

TEST(LoginOptions, SwitchesAreIndependent) {
    const LoginOptions options = ParseOptions({"-mp", "-hd"});
    EXPECT_EQ(options.multipath, "No");
    EXPECT_EQ(options.headerDigest, "CRC32C");
    EXPECT_EQ(options.dataDigest, "No");
    EXPECT_EQ(options.authentication, "None");
    EXPECT_EQ(ParseOptions({"-dd"}).dataDigest, "CRC32C");
}

TEST(LoginOptions, OtherWordsAndSpellingsAreIgnored) {
    const LoginOptions options =
        ParseOptions({"word", "-MP", "-mutualCHAP", "-oneWayCHAP", "-mpx", ""});
    EXPECT_EQ(options.multipath, "Yes");
    EXPECT_EQ(options.authentication, "None");
}

TEST(LoginOptions, OneWayChapAsksForTheTarget) {
    const LoginOptions options = ParseOptions({"-onewaychap"}, "target name\nabcdefghijkl\n");
    EXPECT_EQ(options.authentication, "One-way CHAP");
    EXPECT_EQ(options.targetChapName, "target name");
    EXPECT_EQ(options.targetSecret, "abcdefghijkl");
    EXPECT_EQ(options.initiatorChapName, "");
}

TEST(LoginOptions, MutualChapAsksForBothSides) {
    const LoginOptions options = ParseOptions(
        {"-mutualchap"}, "target\r\nabcdefghijkl\r\ninitiator\r\nABCDEFGHIJKLMNOP\r\n");
    EXPECT_EQ(options.authentication, "Mutual CHAP");
    EXPECT_EQ(options.targetChapName, "target");
    EXPECT_EQ(options.targetSecret, "abcdefghijkl");
    EXPECT_EQ(options.initiatorChapName, "initiator");
    EXPECT_EQ(options.initiatorSecret, "ABCDEFGHIJKLMNOP");
}

TEST(LoginOptions, SecretsHave12To16Characters) {
    // 11, 17 and none are refused; 12 is taken for the target. 16 is taken for the initiator.
    const LoginOptions options = ParseOptions({"-mutualchap"},
                                              "t\n12345678901\n12345678901234567\n\n123456789012\n"
                                              "i\nshort\n1234567890123456\n");
    EXPECT_EQ(options.targetSecret, "123456789012");
    EXPECT_EQ(options.initiatorChapName, "i");
    EXPECT_EQ(options.initiatorSecret, "1234567890123456");
}

TEST(LoginOptions, GuardWipesTheSecrets) {
    LoginOptions options;
    options.targetChapName = "target";
    options.targetSecret = "abcdefghijkl";
    options.initiatorSecret = "ABCDEFGHIJKLMNOP";
    const char* const targetBytes = options.targetSecret.data();
    const char* const initiatorBytes = options.initiatorSecret.data();
    { const RecordSecretsGuard guard(options); }
    EXPECT_EQ(options.targetChapName, "target");
    EXPECT_EQ(options.targetSecret, "");
    EXPECT_EQ(options.initiatorSecret, "");
    ASSERT_EQ(options.targetSecret.data(), targetBytes);
    ASSERT_EQ(options.initiatorSecret.data(), initiatorBytes);
    EXPECT_EQ(std::string(targetBytes, 12), std::string(12, '\0'));
    EXPECT_EQ(std::string(initiatorBytes, 16), std::string(16, '\0'));
}

TEST(YesNo, AsksUntilTheAnswerIsOneOfFourLetters) {
    console::MemoryConsole memory("yes\n Y\n\nn\nY\n");
    EXPECT_TRUE(AskYesNo("y"));
    EXPECT_TRUE(AskYesNo("Y"));
    EXPECT_FALSE(AskYesNo("n"));
    EXPECT_FALSE(AskYesNo("N"));
    EXPECT_FALSE(AskYesNo("maybe"));
    EXPECT_TRUE(AskYesNo(""));
}

}  // namespace
}  // namespace tavro
