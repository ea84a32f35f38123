#include "linux/netlink/addresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

using testing::Optional;

TEST(IpAddress, IsReadAndWrittenAsUsual) {
    EXPECT_EQ(TextOf(IpAddressFrom("192.0.2.1").value()), "192.0.2.1");
    EXPECT_EQ(TextOf(IpAddressFrom("2001:DB8:0::1").value()), "2001:db8::1");
    EXPECT_EQ(IpAddressFrom("192.0.2"), std::nullopt);
    EXPECT_EQ(IpAddressFrom("192.0.2.1 "), std::nullopt);
    EXPECT_EQ(IpAddressFrom(""), std::nullopt);
    EXPECT_TRUE(IpAddressFrom("0.0.0.0")->IsZero());
    EXPECT_TRUE(IpAddressFrom("0000:0000:0000:0000:0000:0000:0000:0000")->IsZero());
    EXPECT_FALSE(IpAddressFrom("0.0.0.1")->IsZero());
}

TEST(IpAddress, IsForAHostWhereOthersCanReachIt) {
    for (const char* const usable : {"1.0.0.0", "192.0.2.1", "169.254.1.1", "223.255.255.255",
                                     "2001:db8::1", "fd00::1", "fec0::1", "::2"}) {
        EXPECT_TRUE(IpAddressFrom(usable).value().IsForHost()) << usable;
    }
    for (const char* const other :
         {"0.0.0.0", "0.0.0.1", "127.0.0.1", "224.0.0.1", "240.0.0.1", "255.255.255.255",
          "::", "::1", "fe80::1", "febf::1", "ff02::1", "::ffff:192.0.2.9"}) {
        EXPECT_FALSE(IpAddressFrom(other).value().IsForHost()) << other;
    }
}

TEST(IpAddress, IsForAllWhereItNamesNoSingleHost) {
    struct Sample {
        const char* address;
        std::uint32_t prefixLength;
        bool isForAll;
    };
    for (const Sample& sample : {
             Sample{"192.0.2.0", 24, true},
             {"192.0.2.255", 24, true},
             {"192.0.3.255", 23, true},
             {"192.0.2.255", 23, false},
             {"192.0.3.0", 23, false},
             {"192.0.2.1", 24, false},
             {"192.0.2.4", 30, true},
             {"192.0.2.5", 30, false},
             {"192.0.2.7", 30, true},
             {"192.0.2.6", 31, false},
             {"192.0.2.7", 31, false},
             {"192.0.2.0", 32, false},
             {"2001:db8::", 64, false},
         }) {
        EXPECT_EQ(IpAddressFrom(sample.address).value().IsForAll(sample.prefixLength),
                  sample.isForAll)
            << sample.address << '/' << sample.prefixLength;
    }
}

TEST(Addresses, OfAnInterfaceThatIsGoneAreAFailure) {
    Socket route(NETLINK_ROUTE);
    Link link;
    link.index = 0x7FFFFFF0;
    try {
        ReadAddresses(route, link, Family::IPv4);
        FAIL() << "an empty list";
    } catch (const SystemFailure& failure) {
        EXPECT_TRUE(failure.IsGone()) << failure.what();
    }
}

TEST(Mask, IsAPrefixOfOnes) {
    EXPECT_EQ(MaskText(0), "0.0.0.0");
    EXPECT_EQ(MaskText(20), "255.255.240.0");
    EXPECT_EQ(MaskText(32), "255.255.255.255");
    EXPECT_THAT(PrefixLengthOf(IpAddressFrom("255.255.240.0").value()), Optional(20U));
    EXPECT_THAT(PrefixLengthOf(IpAddressFrom("0.0.0.0").value()), Optional(0U));
    EXPECT_EQ(PrefixLengthOf(IpAddressFrom("255.0.255.0").value()), std::nullopt);
    EXPECT_EQ(PrefixLengthOf(IpAddressFrom("0.0.0.255").value()), std::nullopt);
    EXPECT_EQ(PrefixLengthOf(IpAddressFrom("ffff::").value()), std::nullopt);
}

}  // namespace
}  // namespace tavrolinux
