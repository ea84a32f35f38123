#include "cli/startup.h"

#include <gtest/gtest.h>

namespace tavro {
namespace {

bool Debug(std::initializer_list<const char*> words) {
    return EndsWithDebugSwitch(Arguments(words.begin(), words.size()));
}

TEST(Startup, DebugSwitchIsTheExactLastArgument) {
    EXPECT_TRUE(Debug({"tavrocli", "-debug"}));
    EXPECT_TRUE(Debug({"tavrocli", "-help", "-debug"}));
    EXPECT_FALSE(Debug({"tavrocli", "-debug", "-help"}));
    EXPECT_FALSE(Debug({"tavrocli", "-debugx"}));
    EXPECT_FALSE(Debug({"tavrocli", "-DEBUG"}));
    EXPECT_FALSE(Debug({"tavrocli", ""}));
    EXPECT_FALSE(Debug({}));
}

TEST(Startup, LocaleTextHoldsAtMostThirtyCharacters) {
    EXPECT_EQ(LocaleText("ja_JP.UTF-8"), L"ja_JP.UTF-8");
    EXPECT_EQ(LocaleText(""), L"");
    const std::string thirty = "Chinese (Simplified)_China.936";
    ASSERT_EQ(thirty.size(), 30U);
    EXPECT_EQ(LocaleText(thirty), std::wstring(thirty.begin(), thirty.end()));
    EXPECT_EQ(LocaleText(thirty + "!"), std::wstring(thirty.begin(), thirty.end()));
}

}  // namespace
}  // namespace tavro
