#include "twin/run/program_run.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavrohost {
namespace {

using Words = std::vector<std::string>;

TEST(CommandOf, IsTheRowThatTheGrammarFinds) {
    EXPECT_EQ(CommandOf({"-about"}).code, tavro::CommandCode{2});
    EXPECT_EQ(CommandOf({"-fcoe", "10:00", "-setfip", "5"}).code, tavro::CommandCode{45});
    EXPECT_EQ(CommandOf({}).code, tavro::CommandCode::NotRecognised);
    EXPECT_EQ(CommandOf({"-iscsi", "02", "-target", "-getinfo"}).code,
              tavro::CommandCode::TooFewArguments);
}

TEST(StatusOf, IsThatOfToolsThatCompare) {
    EXPECT_EQ(StatusOf(RunOutcome::Done), 0);
    EXPECT_EQ(StatusOf(RunOutcome::Refused), 1);
    EXPECT_EQ(StatusOf(RunOutcome::Failed), 2);
}

TEST(ShownArguments, HideWordsThatAreNoLoginOptions) {
    EXPECT_EQ(ShownArguments(
                  {"-iscsi", "-setinitiator", "iqn.x", "-mp", "-mutualchap", "secret", "-debug"}),
              (Words{"-iscsi", "-setinitiator", "iqn.x", "-mp", "-mutualchap", "***", "-debug"}));
    EXPECT_EQ(ShownArguments({"-iscsi", "02", "-target", "-login", "iqn.t", "192.0.2.1", "3260",
                              "-onewaychap", "secret"}),
              (Words{"-iscsi", "02", "-target", "-login", "iqn.t", "192.0.2.1", "3260",
                     "-onewaychap", "***"}));
    EXPECT_EQ(ShownArguments({"-about", "more"}), (Words{"-about", "more"}));
}

TEST(ShownArguments, AreUtf8) {
    EXPECT_EQ(ShownArguments({"-nonsense", "\xFF"}), (Words{"-nonsense", "\xEF\x9F\xBF"}));
}

}  // namespace
}  // namespace tavrohost
