#include "linux/netlink/ethtool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/ethtool_netlink.h>

#include <cerrno>
#include <functional>

#include "linux/netlink/ethtool_link.h"

namespace tavrolinux {
namespace {

constexpr int Bits = 5;

// The bits of the attribute that `put` puts into a message.
NamedBits BitsIn(const std::function<void(Message&)>& put) {
    Message message(0, 0);
    put(message);
    NamedBits bits;
    int found = 0;
    ForEachAttribute(AttributesOf(*nlmsg_hdr(message.Get()), 0),
                     [&](int type, const nlattr& attribute) {
                         EXPECT_EQ(type, Bits);
                         ++found;
                         bits = BitsOf(attribute);
                     });
    EXPECT_EQ(found, 1);
    return bits;
}

TEST(NamedBits, AreReadAsTheyAreWritten) {
    const NamedBits bits{{"rx-checksum", true}, {"tx-tcp-segmentation", false}};
    EXPECT_EQ(BitsIn([&bits](Message& message) { PutBits(message, Bits, bits); }), bits);
}

// Without a mask only those that are set are told, by their names alone.
TEST(NamedBits, WithoutAMaskAreSet) {
    const auto put = [](Message& message) {
        message.Nest(Bits, [&message] {
            message.PutFlag(ETHTOOL_A_BITSET_NOMASK);
            message.PutNumber32(ETHTOOL_A_BITSET_SIZE, 64);
            message.Nest(ETHTOOL_A_BITSET_BITS, [&message] {
                message.Nest(ETHTOOL_A_BITSET_BITS_BIT, [&message] {
                    message.PutNumber32(ETHTOOL_A_BITSET_BIT_INDEX, 3);
                    message.PutText(ETHTOOL_A_BITSET_BIT_NAME, "rx-lro");
                });
            });
        });
    };
    EXPECT_EQ(BitsIn(put), (NamedBits{{"rx-lro", true}}));
}

TEST(Ethtool, TellsWhatADeviceLacksFromWhatCouldNotBeAsked) {
    Link up;
    up.isUp = true;
    const Link down;
    for (const int lacking : {EOPNOTSUPP, ENOSYS, EINVAL, ENODEV}) {
        EXPECT_TRUE(IsLacking(lacking, up) && IsLacking(lacking, down)) << lacking;
    }
    for (const int untilUp : {EBUSY, EAGAIN, ENETDOWN}) {
        EXPECT_TRUE(!IsLacking(untilUp, up) && IsLacking(untilUp, down)) << untilUp;
    }
    for (const int failed : {ENOMEM, ENOBUFS, EIO, EPERM, EACCES}) {
        EXPECT_FALSE(IsLacking(failed, up) || IsLacking(failed, down)) << failed;
    }
}

TEST(LinkMode, TellsItsSpeedByItsName) {
    EXPECT_EQ(SpeedOfMode("10baseT/Half"), 10U);
    EXPECT_EQ(SpeedOfMode("2500baseX/Full"), 2500U);
    EXPECT_EQ(SpeedOfMode("100000baseCR4/Full"), 100000U);
    for (const char* const other :
         {"Autoneg", "TP", "Pause", "1000", "", "100Mbit", "99999999999baseT"}) {
        EXPECT_EQ(SpeedOfMode(other), std::nullopt) << other;
    }
}

}  // namespace
}  // namespace tavrolinux
