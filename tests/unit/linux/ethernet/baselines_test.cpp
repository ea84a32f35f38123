#include "linux/ethernet/baselines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace tavrolinux {
namespace {

constexpr std::uint32_t Network = 7;

// The present names of interfaces by their numbers.
NameOfInterface NamesOf(const std::map<std::int32_t, std::string>& names) {
    return [names](const Baseline& baseline) {
        const auto found = names.find(baseline.number.index);
        return found == names.end() ? std::nullopt : std::optional(found->second);
    };
}

void Keep(State& state, const std::map<std::int32_t, std::string>& names, std::int32_t index,
          std::uint64_t count) {
    KeepBaseline(state, names.at(index), {{index, Network}, "", {{"counter", count}}},
                 NamesOf(names));
}

std::optional<std::uint64_t> CountOf(const State& state, std::int32_t index,
                                     std::uint32_t network = Network) {
    const Baseline* const baseline = FindBaseline(state, {index, network});
    return baseline != nullptr ? std::optional(baseline->counters.at("counter")) : std::nullopt;
}

TEST(Baseline, BelongsToItsInterfaceUnderAnyName) {
    State state;
    Keep(state, {{2, "eth0"}}, 2, 20);
    Keep(state, {{2, "lan0"}}, 2, 21);
    EXPECT_EQ(CountOf(state, 2), 21U);
    EXPECT_TRUE(state.interfaces["eth0"].baselines.empty());
    EXPECT_EQ(CountOf(state, 3), std::nullopt);
}

TEST(Baseline, IsDroppedUnderTheNameOfThen) {
    State state;
    Keep(state, {{2, "eth0"}}, 2, 20);
    Keep(state, {{3, "eth1"}}, 3, 30);
    DropBaseline(state, {2, Network});
    EXPECT_EQ(CountOf(state, 2), std::nullopt);
    EXPECT_EQ(CountOf(state, 3), 30U);
}

TEST(Baseline, MovesWhenAnotherInterfaceHasItsName) {
    State state;
    Keep(state, {{2, "eth0"}}, 2, 20);
    Keep(state, {{2, "lan0"}, {3, "eth0"}}, 3, 30);
    EXPECT_EQ(CountOf(state, 2), 20U);
    EXPECT_EQ(CountOf(state, 3), 30U);
    EXPECT_TRUE(state.interfaces["lan0"].baselines.contains("ethernet"));
}

TEST(Baseline, MovesThroughAllInterfacesThatHaveSwappedTheirNames) {
    State state;
    const std::map<std::int32_t, std::string> before{{2, "a"}, {3, "b"}, {4, "c"}};
    Keep(state, before, 2, 20);
    Keep(state, before, 3, 30);
    Keep(state, before, 4, 40);
    Keep(state, {{2, "b"}, {3, "c"}, {4, "a"}}, 2, 21);
    EXPECT_EQ(CountOf(state, 2), 21U);
    EXPECT_EQ(CountOf(state, 3), 30U);
    EXPECT_EQ(CountOf(state, 4), 40U);
}

TEST(Baseline, BelongsToTheInterfaceOfItsNetworkAlone) {
    State state;
    Keep(state, {{2, "eth0"}}, 2, 20);
    EXPECT_EQ(CountOf(state, 2, Network + 1), std::nullopt);
    DropBaseline(state, {2, Network + 1});
    EXPECT_EQ(CountOf(state, 2), 20U);
}

TEST(Baseline, GoesWithItsInterfaceWhenAnotherHasItsName) {
    State state;
    Keep(state, {{2, "eth0"}}, 2, 20);
    Keep(state, {{3, "eth0"}}, 3, 30);
    EXPECT_EQ(CountOf(state, 2), std::nullopt);
    EXPECT_EQ(CountOf(state, 3), 30U);
}

}  // namespace
}  // namespace tavrolinux
