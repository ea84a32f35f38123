#include <gtest/gtest.h>

#include "iscsi/sessions.h"

namespace tavro {
namespace {

using Ids = std::list<std::string>;

TEST(SessionIds, AreSplitAtCommas) {
    EXPECT_EQ(SplitSessionIds("3"), (Ids{"3"}));
    EXPECT_EQ(SplitSessionIds("3,5"), (Ids{"3", "5"}));
    EXPECT_EQ(SplitSessionIds("3,5,99999"), (Ids{"3", "5", "99999"}));
}

TEST(SessionIds, ATrailingCommaAddsNothing) {
    EXPECT_EQ(SplitSessionIds("7,"), (Ids{"7"}));
    EXPECT_EQ(SplitSessionIds("3,7,"), (Ids{"3", "7"}));
}

TEST(SessionIds, ACommaWithNothingInFrontEndsTheSplitting) {
    EXPECT_EQ(SplitSessionIds(",7"), (Ids{",7"}));
    EXPECT_EQ(SplitSessionIds("3,,5"), (Ids{"3", ",5"}));
    EXPECT_EQ(SplitSessionIds("3,,5,6,"), (Ids{"3", ",5,6,"}));
    EXPECT_EQ(SplitSessionIds("3,,"), (Ids{"3", ","}));
}

TEST(SessionIds, NothingGivesNone) {
    EXPECT_EQ(SplitSessionIds(""), Ids{});
}

}  // namespace
}  // namespace tavro
