#include "tavroapi/codes.h"

#include <gtest/gtest.h>

namespace tavroapi {
namespace {

// The library on the other side was built without these names: the numbers are what counts.
TEST(Codes, AreTheNumbersThatTheLibraryKnows) {
    EXPECT_EQ(ValueRefused, 5);
    EXPECT_EQ(AppliedAtRestart, 201);
    EXPECT_EQ(IscsiPingRepliesMissing, 0x9017U);
    EXPECT_EQ(FcoePingRepliesMissing, 0x8000U);
    EXPECT_EQ(NotPartitioned, 1U);
    EXPECT_EQ(PartitionedForGood, 2U);
    EXPECT_EQ(Partitioned, 3U);
    EXPECT_EQ(RestrictedAdapterState, 6);
}

}  // namespace
}  // namespace tavroapi
