#include "linux/system/size_text.h"

#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

TEST(SizeText, IsInTheLargestUnitThatSuits) {
    EXPECT_EQ(SizeText(0, 512), "0 B");
    EXPECT_EQ(SizeText(1, 512), "512 B");
    EXPECT_EQ(SizeText(32768, 512), "16 MB");
    EXPECT_EQ(SizeText(std::uint64_t{100} << 21U, 512), "100 GB");
    EXPECT_EQ(SizeText(std::uint64_t{3} << 30U, 512), "1.5 TB");
    EXPECT_EQ(SizeText(1280, 1), "1.25 KB");
    EXPECT_EQ(SizeText(1024 + 11, 1), "1.01 KB");
    EXPECT_EQ(SizeText(1024 + 10, 1), "1 KB");
    EXPECT_EQ(SizeText(std::uint64_t{1} << 60U, 1), "1 EB");
    EXPECT_EQ(SizeText(0xffffffffffffffff, 1), "15.99 EB");
    EXPECT_EQ(SizeText(std::uint64_t{1} << 60U, 512), "");
}

}  // namespace
}  // namespace tavrolinux
