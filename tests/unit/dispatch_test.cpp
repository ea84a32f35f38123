#include "dispatch.h"

#include <gtest/gtest.h>

#include <set>

namespace tavro {
namespace {

const std::set<std::uint32_t> WarningCodes = {3, 5};
const std::set<std::uint32_t> BlockedCodes = {29, 36, 40, 43, 45, 47, 48, 52, 54, 58, 60, 61, 63};

TEST(Dispatch, EveryCodeButTheUnusedOneHasOneRow) {
    std::set<std::uint32_t> expected;
    for (std::uint32_t code = 0; code <= LastCommandCode; ++code) {
        if (code != 31) {
            expected.insert(code);
        }
    }
    std::set<std::uint32_t> found;
    for (const Command& command : Commands()) {
        EXPECT_TRUE(found.insert(static_cast<std::uint32_t>(command.code)).second);
    }
    EXPECT_EQ(found, expected);
}

TEST(Dispatch, AccessClassesAreThoseOfTheRestrictedState) {
    for (const Command& command : Commands()) {
        const auto code = static_cast<std::uint32_t>(command.code);
        const AccessClass expected = WarningCodes.contains(code)   ? AccessClass::Warns
                                     : BlockedCodes.contains(code) ? AccessClass::Blocked
                                                                   : AccessClass::Runs;
        EXPECT_EQ(command.access, expected) << code;
    }
}

TEST(Dispatch, FindsRowsByCode) {
    ASSERT_NE(FindCommand(CommandCode::Help), nullptr);
    EXPECT_EQ(FindCommand(CommandCode::Help)->code, CommandCode::Help);
    EXPECT_EQ(FindCommand(static_cast<CommandCode>(31)), nullptr);
    EXPECT_EQ(FindCommand(static_cast<CommandCode>(64)), nullptr);
}

}  // namespace
}  // namespace tavro
