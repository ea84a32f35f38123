#include "linux/system/attribute.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

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

// A device of so many bytes that fails at one of them, as sysfs gives its data: a piece is given
// whole or not at all.
class FailingDevice {
  public:
    FailingDevice(std::string bytes, std::size_t failing)
        : bytes_(std::move(bytes)), failing_(failing) {}

    std::ptrdiff_t operator()(std::span<char> place) {
        const std::size_t size = std::min(place.size(), bytes_.size() - at_);
        if (at_ <= failing_ && failing_ < at_ + size) {
            return -1;
        }
        bytes_.copy(place.data(), size, at_);
        at_ += size;
        return static_cast<std::ptrdiff_t>(size);
    }

  private:
    std::string bytes_;
    std::size_t failing_;
    std::size_t at_ = 0;
};

TEST(CollectedBytes, AreThoseBeforeAFailure) {
    const std::string bytes = "0123456789";
    const auto collect = [&bytes](std::size_t failing, std::size_t longest, std::size_t piece) {
        return CollectBytes(FailingDevice(bytes, failing), longest, piece);
    };
    constexpr std::size_t Never = 100;
    EXPECT_EQ(collect(Never, 64, 4).bytes, bytes);
    EXPECT_FALSE(collect(Never, 64, 4).hasFailed);
    EXPECT_EQ(collect(Never, 7, 4).bytes, "0123456");
    EXPECT_FALSE(collect(7, 7, 4).hasFailed);
    EXPECT_EQ(collect(9, 64, 4).bytes, "01234567");
    EXPECT_TRUE(collect(9, 64, 4).hasFailed);
    EXPECT_EQ(collect(0, 64, 4).bytes, "");
    EXPECT_TRUE(collect(0, 64, 4).hasFailed);
}

TEST(Bytes, AreReadWithAndWithoutCareForFailures) {
    const Tree tree;
    const std::string large(10000, 'x');
    tree.File("sys/large", large);
    const auto file = tree.Placed("sys/large");
    EXPECT_EQ(ReadBytes(file), large);
    EXPECT_EQ(ReadBytesBeforeFailure(file), large);
    EXPECT_EQ(ReadBytes(file, 5000), large.substr(0, 5000));
    EXPECT_EQ(ReadBytesBeforeFailure(file, 5000), large.substr(0, 5000));
    EXPECT_EQ(ReadBytesBeforeFailure(tree.Placed("sys/absent")), std::nullopt);
    // No process can read at its address 0.
    EXPECT_EQ(ReadBytes("/proc/self/mem"), std::nullopt);
    EXPECT_EQ(ReadBytesBeforeFailure("/proc/self/mem"), std::nullopt);
}

}  // namespace
}  // namespace tavrolinux
