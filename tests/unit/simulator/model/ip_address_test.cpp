#include "simulator/model/ip_address.h"

#include <gtest/gtest.h>

namespace tavrosim {
namespace {

TEST(IpAddress, AnAddressIsTheSameHoweverItIsWritten) {
    const std::pair<const char*, const char*> pairs[] = {
        {"192.0.2.7", "192.0.2.007"},
        {"2001:db8::1", "2001:0DB8:0:0:0:0:0:0001"},
        {"::", "0:0:0:0:0:0:0:0"},
        {"1::", "1:0:0:0:0:0:0:0"},
        {"::ffff:192.0.2.7", "::ffff:c000:207"},
        {"0:0:0:0:0:ffff:192.0.2.7", "::ffff:c000:207"},
        {"1:2:3:4:5:6:7::", "1:2:3:4:5:6:7:0"},
        {"fe80::1%eth0.12", "fe80:0::1%eth0.12"},
    };
    for (const auto& [one, other] : pairs) {
        ASSERT_TRUE(IpAddressFrom(one)) << one;
        EXPECT_EQ(IpAddressFrom(one), IpAddressFrom(other)) << one << " and " << other;
        EXPECT_TRUE(AddressMatch(one)(other)) << one << " and " << other;
    }
}

TEST(IpAddress, DifferentAddressesDiffer) {
    const std::pair<const char*, const char*> pairs[] = {
        {"192.0.2.7", "192.0.2.8"},        {"192.0.2.7", "::192.0.2.7"},
        {"2001:db8::1", "2001:db8::1:0"},  {"fe80::1", "fe80::1%eth0"},
        {"fe80::1%eth0", "fe80::1%eth1"},  {"0.0.0.0", "::"},
        {"192.0.2.7", "::ffff:192.0.2.7"},
    };
    for (const auto& [one, other] : pairs) {
        ASSERT_TRUE(IpAddressFrom(one) && IpAddressFrom(other)) << one << " and " << other;
        EXPECT_NE(IpAddressFrom(one), IpAddressFrom(other)) << one << " and " << other;
    }
}

TEST(IpAddress, OtherTextsAreNoAddresses) {
    for (const char* text : {"",
                             " ",
                             "nowhere",
                             "192.0.2",
                             "192.0.2.7.1",
                             "192.0.2.256",
                             "192..2.7",
                             ".192.0.2.7",
                             "192.0.2.7.",
                             "192.0.2.0007",
                             "192.0.2.-7",
                             "192.0.2.+7",
                             "192.0.2.7 ",
                             "0x7.0.0.1",
                             "2001:db8",
                             ":",
                             ":::",
                             "1:::2",
                             "1::2::3",
                             ":1::2",
                             "1::2:",
                             "1:2:3:4:5:6:7:8:",
                             "1:2:3:4:5:6:7:8:9",
                             "1:2:3:4:5:6:7::8",
                             "::1:2:3:4:5:6:7:8",
                             "12345::",
                             "g::",
                             "::1.2.3",
                             "1.2.3.4::",
                             "::1.2.3.4:5",
                             "1:2:3:4:5:6:7:1.2.3.4",
                             "fe80::1%",
                             "fe80::1%a b",
                             "2001:db8::1%eth0",
                             "192.0.2.7%eth0"}) {
        EXPECT_FALSE(IpAddressFrom(text)) << text;
    }
}

TEST(IpAddress, TextsThatAreNoAddressesMatchTheirLike) {
    EXPECT_TRUE(AddressMatch("storage")("storage"));
    EXPECT_FALSE(AddressMatch("storage")("Storage"));
    EXPECT_FALSE(AddressMatch("192.0.2.7")("storage"));
    EXPECT_FALSE(AddressMatch("storage")("192.0.2.7"));
}

}  // namespace
}  // namespace tavrosim
