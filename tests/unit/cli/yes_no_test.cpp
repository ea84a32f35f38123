#include "cli/yes_no.h"

#include <gtest/gtest.h>

namespace tavro {
namespace {

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

}  // namespace
}  // namespace tavro
