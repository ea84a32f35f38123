#include "linux/system/attribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavrolinux_test::Tree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(Number, IsDecimalOrMarkedAsHexadecimal) {
    EXPECT_THAT(NumberFrom("0"), Optional(0U));
    EXPECT_THAT(NumberFrom("1500"), Optional(1500U));
    EXPECT_THAT(NumberFrom("0x1af4"), Optional(0x1af4U));
    EXPECT_THAT(NumberFrom("0xffffffffffffffff"), Optional(0xffffffffffffffffU));
    for (const char* other : {"", "0x", "-1", "+1", " 1", "1 ", "1a", "1.5", "x1", "0x0x1",
                              "18446744073709551616", "0x10000000000000000"}) {
        EXPECT_EQ(NumberFrom(other), std::nullopt) << other;
    }
}

TEST(Attribute, IsReadWithoutTheBlanksAroundIt) {
    const Tree tree;
    tree.File("sys/one", " \t10 Gbit \r\n\n");
    tree.File("sys/blank", " \n");
    tree.File("sys/number", "0x10\n");
    EXPECT_EQ(ReadAttribute(tree.Placed("sys/one")), "10 Gbit");
    EXPECT_EQ(ReadAttribute(tree.Placed("sys/blank")), "");
    EXPECT_EQ(ReadAttribute(tree.Placed("sys/absent")), "");
    EXPECT_THAT(ReadNumber(tree.Placed("sys/number")), Optional(16U));
    EXPECT_EQ(ReadNumber(tree.Placed("sys/one")), std::nullopt);
    EXPECT_EQ(ReadNumber(tree.Placed("sys/absent")), std::nullopt);
}

TEST(Attribute, IsNeverReadBeyondItsLimit) {
    const Tree tree;
    tree.File("sys/long", std::string(LongestAttribute, 'a') + "bb");
    EXPECT_EQ(ReadBytes(tree.Placed("sys/long")), std::string(LongestAttribute, 'a'));
    EXPECT_EQ(ReadBytes(tree.Placed("sys/long"), 3), "aaa");
    EXPECT_EQ(ReadBytes(tree.Placed("sys/long"), LongestAttribute + 100)->size(),
              LongestAttribute + 2);
}

TEST(Attribute, IsARegularFile) {
    const Tree tree;
    tree.Directory("sys/folder");
    EXPECT_EQ(ReadBytes(tree.Placed("sys/folder")), std::nullopt);
    // Its reader would wait for a writer.
    ASSERT_EQ(mkfifo(tree.Placed("sys/pipe").c_str(), 0600), 0);
    EXPECT_EQ(ReadBytes(tree.Placed("sys/pipe")), std::nullopt);
}

TEST(Folder, HasItsNamesInOrder) {
    const Tree tree;
    tree.File("sys/net/eth1", "");
    tree.Directory("sys/net/eth0");
    tree.Link("sys/net/lo", "nowhere");
    EXPECT_THAT(NamesIn(tree.Placed("sys/net")), ElementsAre("eth0", "eth1", "lo"));
    EXPECT_THAT(NamesIn(tree.Placed("sys/absent")), IsEmpty());
}

TEST(Link, LeadsToANameAndAFolder) {
    const Tree tree;
    tree.Directory("sys/devices/0000:03:00.1");
    tree.Link("sys/net/eth0/device", "../../devices/0000:03:00.1");
    tree.Link("sys/net/eth0/driver", "../../drivers/sampledrv");
    const auto port = tree.Placed("sys/net/eth0");
    EXPECT_EQ(LinkedName(port / "device"), "0000:03:00.1");
    EXPECT_EQ(LinkedName(port / "driver"), "sampledrv");
    EXPECT_EQ(LinkedName(port / "absent"), "");
    EXPECT_EQ(LinkedName(port), "");
    EXPECT_EQ(Resolved(port / "device"),
              std::filesystem::canonical(tree.Placed("sys/devices/0000:03:00.1")));
    EXPECT_EQ(Resolved(port / "driver"), std::nullopt);
}

}  // namespace
}  // namespace tavrolinux
