#include "twin/diff/rearrangement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace tavrohost {
namespace {

using Kind = RearrangementStep::Kind;
using Steps = std::vector<RearrangementStep>;

// The list of `size` elements, each its own place, after the steps; a new element is 1000 and its
// place.
std::vector<std::size_t> After(std::size_t size, const Steps& steps) {
    std::vector<std::size_t> list(size);
    std::iota(list.begin(), list.end(), 0);
    const auto take = [&list](std::size_t at) {
        const std::size_t element = list.at(at);
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(at));
        return element;
    };
    const auto put = [&list](std::size_t at, std::size_t element) {
        ASSERT_LE(at, list.size());
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(at), element);
    };
    for (const RearrangementStep& step : steps) {
        if (step.kind == Kind::Remove) {
            EXPECT_EQ(take(step.at), step.element);
        } else if (step.kind == Kind::Move) {
            const std::size_t element = take(step.from);
            EXPECT_EQ(element, step.element);
            put(step.at, element);
        } else {
            put(step.at, 1000 + step.element);
        }
    }
    return list;
}

std::vector<std::size_t> Wanted(const ListOrigin& origin) {
    std::vector<std::size_t> list;
    for (std::size_t index = 0; index < origin.size(); ++index) {
        list.push_back(origin[index].value_or(1000 + index));
    }
    return list;
}

TEST(Rearrangement, LeavesAListThatStays) {
    EXPECT_TRUE(Rearrange(3, {0, 1, 2}).empty());
}

TEST(Rearrangement, RemovesFromTheEnd) {
    const Steps wanted{{.kind = Kind::Remove, .element = 2, .at = 2, .from = 0},
                       {.kind = Kind::Remove, .element = 0, .at = 0, .from = 0}};
    EXPECT_EQ(Rearrange(3, {1}), wanted);
}

TEST(Rearrangement, AddsWhereTheElementShallStand) {
    const Steps wanted{{.kind = Kind::Add, .element = 1, .at = 1, .from = 0}};
    EXPECT_EQ(Rearrange(2, {0, std::nullopt, 1}), wanted);
}

TEST(Rearrangement, MovesOnlyTheOneThatWentToTheEnd) {
    const Steps wanted{{.kind = Kind::Move, .element = 0, .at = 3, .from = 0}};
    EXPECT_EQ(Rearrange(4, {1, 2, 3, 0}), wanted);
}

TEST(Rearrangement, MakesAnyListOfAnyOther) {
    std::mt19937 random(4711);
    for (int round = 0; round < 500; ++round) {
        const std::size_t size = random() % 12;
        std::vector<std::size_t> places(size);
        std::iota(places.begin(), places.end(), 0);
        std::shuffle(places.begin(), places.end(), random);
        places.resize(size - (size == 0 ? 0 : random() % size));
        ListOrigin origin(places.begin(), places.end());
        for (std::size_t added = random() % 4; added > 0; --added) {
            origin.insert(
                origin.begin() + static_cast<std::ptrdiff_t>(random() % (origin.size() + 1)),
                std::nullopt);
        }
        EXPECT_EQ(After(size, Rearrange(size, origin)), Wanted(origin));
    }
}

}  // namespace
}  // namespace tavrohost
