#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "simulator/host/host_file.h"
#include "tests/unit/twin/diff/mutation.h"
#include "twin/diff/difference.h"
#include "twin/diff/identity.h"
#include "twin/diff/text.h"

namespace tavrohost {
namespace {

using tavrohost_test::JsonOf;
using tavrohost_test::Mutated;
using tavrosim::Host;

// Members in the order of their keys, in which equal objects are equal.
using Unordered = nlohmann::json;

struct Pair {
    Host before;
    Host after;  // what random changes made of it
};

std::vector<Pair> MakePairs() {
    constexpr int Rounds = 16;
    std::mt19937 random(20150101);
    std::vector<Pair> pairs;
    for (int round = 0; round < Rounds; ++round) {
        const Host before = Mutated(tavrosim::DefaultHost(), 8 * round, random);
        pairs.push_back({before, Mutated(before, 1 + 3 * round, random)});
    }
    return pairs;
}

// Calls `test` with hosts and what became of them.
template <class Test>
void ForMutatedHosts(const Test& test) {
    static const std::vector<Pair> Pairs = MakePairs();
    for (const Pair& pair : Pairs) {
        SCOPED_TRACE(&pair - Pairs.data());
        test(pair.before, pair.after);
    }
}

template <class IsLeftOut>
void LeaveOut(Unordered& json, const IsLeftOut& isLeftOut) {
    if (json.is_object()) {
        for (auto member = json.begin(); member != json.end();) {
            member = isLeftOut(member.key()) ? json.erase(member) : std::next(member);
        }
    }
    if (json.is_structured()) {
        for (Unordered& value : json) {
            LeaveOut(value, isLeftOut);
        }
    }
}

void SortLists(Unordered& json) {
    if (json.is_structured()) {
        for (Unordered& value : json) {
            SortLists(value);
        }
    }
    if (json.is_array()) {
        std::sort(json.begin(), json.end());
    }
}

Unordered Patched(const Host& host, const Difference& difference) {
    return Unordered(JsonOf(host)).patch(Unordered(difference.patch));
}

TEST(DifferenceProperty, ThePatchMakesOneHostOfTheOther) {
    ForMutatedHosts([](const Host& before, const Host& after) {
        const Difference difference =
            DifferenceOf(before, after, {.counters = true, .withSecrets = true});
        EXPECT_EQ(Patched(before, difference), Unordered(JsonOf(after)));
    });
}

TEST(DifferenceProperty, ThePatchLeavesOutCountersAndSecrets) {
    const auto isLeftOut = [](const std::string& key) {
        return IsCounterMember(key) || IsSecretMember(key);
    };
    ForMutatedHosts([&](const Host& before, const Host& after) {
        Unordered patched = Patched(before, DifferenceOf(before, after));
        Unordered wanted = JsonOf(after);
        LeaveOut(patched, isLeftOut);
        LeaveOut(wanted, isLeftOut);
        EXPECT_EQ(patched, wanted);
    });
}

TEST(DifferenceProperty, AHostDoesNotDifferFromItself) {
    ForMutatedHosts([](const Host& before, const Host&) {
        const Difference difference =
            DifferenceOf(before, before, {.counters = true, .withSecrets = true});
        EXPECT_TRUE(difference.changes.empty());
        EXPECT_TRUE(difference.patch.empty());
        EXPECT_EQ(TextOf(difference), "");
    });
}

TEST(DifferenceProperty, HostsThatDoNotDifferAreEqualButForTheOrderOfLists) {
    ForMutatedHosts([](const Host& before, const Host& after) {
        const Difference difference = DifferenceOf(before, after, {.counters = true});
        Unordered one = JsonOf(before);
        Unordered other = JsonOf(after);
        SortLists(one);
        SortLists(other);
        if (one != other) {
            EXPECT_FALSE(difference.changes.empty());
            EXPECT_NE(TextOf(difference), "");
        }
    });
}

TEST(DifferenceProperty, NoSecretIsTold) {
    int told = 0;
    ForMutatedHosts([&](const Host& before, const Host& after) {
        const std::string secret = tavrohost_test::SecretStart;
        const Difference difference = DifferenceOf(before, after);
        EXPECT_EQ(difference.patch.dump().find(secret), std::string::npos);
        EXPECT_EQ(TextOf(difference).find(secret), std::string::npos);
        for (const Change& change : difference.changes) {
            EXPECT_EQ(change.before.dump().find(secret), std::string::npos);
            EXPECT_EQ(change.after.dump().find(secret), std::string::npos);
        }
        const Difference full = DifferenceOf(before, after, {.withSecrets = true});
        told += full.patch.dump().find(secret) != std::string::npos ? 1 : 0;
    });
    EXPECT_GT(told, 0);  // else there was nothing to keep
}

}  // namespace
}  // namespace tavrohost
