#include "cli/prompts.h"

#include <gtest/gtest.h>

namespace tavro {
namespace {

constexpr Choice Choices[] = {{"y", "Enabled"}, {"Y", "Enabled"}, {"n", "Disabled"}};

TEST(MeaningOf, AnswersAreComparedExactly) {
    EXPECT_EQ(MeaningOf("y", Choices), "Enabled");
    EXPECT_EQ(MeaningOf("Y", Choices), "Enabled");
    EXPECT_EQ(MeaningOf("n", Choices), "Disabled");
    for (const char* answer : {"", "N", "yes", "y ", " y"}) {
        EXPECT_EQ(MeaningOf(answer, Choices), std::nullopt) << answer;
    }
}

}  // namespace
}  // namespace tavro
