#include "linux/iscsi/target_name.h"

#include <gtest/gtest.h>

#include "linux/iscsi/failure.h"

namespace tavrolinux {
namespace {

TEST(TargetName, Has1To223BytesThatCanBeShown) {
    EXPECT_TRUE(IsTargetName("iqn.2020-01.com.example:a"));
    EXPECT_TRUE(IsTargetName("iqn.example:\xC3\xA9"));
    EXPECT_TRUE(IsTargetName(std::string(223, 'a')));
    EXPECT_FALSE(IsTargetName(std::string(224, 'a')));
    for (const char* const name : {"", " ", "a b", "a\tb", "a\x1B[2J", "a\x7F", "a\xC2\x9B",
                                   "a\xC2\xA0", "a\xFF", "a\xC3"}) {
        EXPECT_FALSE(IsTargetName(name)) << name;
    }
}

TEST(TargetName, IsTakenWithoutTheBlanksAroundIt) {
    EXPECT_EQ(TargetNameOf(" iqn.example:a\t"), "iqn.example:a");
    EXPECT_THROW(TargetNameOf("  "), IscsiFailure);
}

}  // namespace
}  // namespace tavrolinux
