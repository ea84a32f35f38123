#include "partition/ports.h"

#include <gtest/gtest.h>

#include <limits>

#include "console/redirect.h"

namespace tavro {
namespace {

using Functions = std::vector<std::size_t>;

TEST(PortsWithFlowControl, AreAtMostFour) {
    EXPECT_EQ(PortsWithFlowControl(std::numeric_limits<std::int32_t>::min()), 0U);
    EXPECT_EQ(PortsWithFlowControl(-1), 0U);
    EXPECT_EQ(PortsWithFlowControl(0), 0U);
    EXPECT_EQ(PortsWithFlowControl(1), 1U);
    EXPECT_EQ(PortsWithFlowControl(4), 4U);
    EXPECT_EQ(PortsWithFlowControl(5), 4U);
    EXPECT_EQ(PortsWithFlowControl(std::numeric_limits<std::int32_t>::max()), 4U);
}

TEST(ShownPorts, AreAtMostSixtyFour) {
    EXPECT_EQ(ShownPorts(std::numeric_limits<std::int32_t>::min()), 0U);
    EXPECT_EQ(ShownPorts(-1), 0U);
    EXPECT_EQ(ShownPorts(0), 0U);
    EXPECT_EQ(ShownPorts(1), 1U);
    EXPECT_EQ(ShownPorts(5), 5U);
    EXPECT_EQ(ShownPorts(64), 64U);
    EXPECT_EQ(ShownPorts(65), 64U);
    EXPECT_EQ(ShownPorts(std::numeric_limits<std::int32_t>::max()), 64U);
}

TEST(FunctionsOfPort, OnePortHasAll) {
    EXPECT_EQ(FunctionsOfPort(0, 1), (Functions{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST(FunctionsOfPort, TwoPortsTakeTurns) {
    EXPECT_EQ(FunctionsOfPort(0, 2), (Functions{0, 2, 4, 6}));
    EXPECT_EQ(FunctionsOfPort(1, 2), (Functions{1, 3, 5, 7}));
}

TEST(FunctionsOfPort, ThreePortsEndAtFunctionSeven) {
    EXPECT_EQ(FunctionsOfPort(0, 3), (Functions{0, 3, 6}));
    EXPECT_EQ(FunctionsOfPort(1, 3), (Functions{1, 4, 7}));
    EXPECT_EQ(FunctionsOfPort(2, 3), (Functions{2, 5}));
}

TEST(FunctionsOfPort, FourPortsHaveTwoEach) {
    EXPECT_EQ(FunctionsOfPort(3, 4), (Functions{3, 7}));
}

TEST(FunctionsOfPort, FivePortsLeaveTheLastTwoWithOne) {
    EXPECT_EQ(FunctionsOfPort(0, 5), (Functions{0, 5}));
    EXPECT_EQ(FunctionsOfPort(2, 5), (Functions{2, 7}));
    EXPECT_EQ(FunctionsOfPort(3, 5), (Functions{3}));
    EXPECT_EQ(FunctionsOfPort(4, 5), (Functions{4}));
}

TEST(FunctionsOfPort, CountsOfBrokenRecordsDoNoHarm) {
    constexpr std::int32_t Largest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(FunctionsOfPort(0, Largest), (Functions{0}));
    EXPECT_EQ(FunctionsOfPort(63, Largest), Functions{});
}

TEST(FunctionsOfPort, MorePortsThanFunctionsLeaveSomeWithout) {
    EXPECT_EQ(FunctionsOfPort(0, 9), (Functions{0}));
    EXPECT_EQ(FunctionsOfPort(8, 9), Functions{});
}

TEST(PrintPortHeading, CountsFromOne) {
    console::MemoryConsole memory;
    PrintPortHeading(0);
    PrintPortHeading(3);
    EXPECT_EQ(memory.Output(), "\t[Port 1]\n\t[Port 4]\n");
}

}  // namespace
}  // namespace tavro
