#include "library/text/identifier.h"

#include <gtest/gtest.h>

namespace tavrolib {
namespace {

TEST(Identifier, AnFcidHasSixHexadecimalDigits) {
    for (const char* const text : {"0123ef", "ABCDEF", "abcdef"}) {
        EXPECT_TRUE(IsFcid(text)) << text;
    }
    for (const char* const text :
         {"", "01234", "0123456", "01234g", "0x1234", "01-234", "012345 "}) {
        EXPECT_FALSE(IsFcid(text)) << text;
    }
}

}  // namespace
}  // namespace tavrolib
