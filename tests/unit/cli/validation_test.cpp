#include "cli/validation.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace tavro {
namespace {

// What a call throws: the error's text, or "" when it throws nothing.
template <class Error>
std::string ThrownText(const std::function<void()>& call) {
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

TEST(Validation, NumberToTextIsDecimal) {
    EXPECT_EQ(NumberToText(0), "0");
    EXPECT_EQ(NumberToText(4294967295U), "4294967295");
}

TEST(Validation, ParseUnsignedReadsTheLeadingNumber) {
    EXPECT_EQ(ParseUnsigned("42"), 42U);
    EXPECT_EQ(ParseUnsigned("  +42 apples"), 42U);
    EXPECT_EQ(ParseUnsigned("007"), 7U);
    EXPECT_EQ(ParseUnsigned("0x10"), 0U);
    EXPECT_EQ(ParseUnsigned("4294967295"), 4294967295U);
    EXPECT_EQ(ParseUnsigned("-1"), 4294967295U);
    EXPECT_EQ(ParseUnsigned("-4294967295"), 1U);
}

TEST(Validation, ParseUnsignedReportsWhatItCannotRead) {
    for (const char* const text : {"", "   ", "abc", "-", "+", "- 1", ",5"}) {
        EXPECT_EQ(ThrownText<std::invalid_argument>([=] { ParseUnsigned(text); }),
                  "invalid stoul argument")
            << text;
    }
    for (const char* const text : {"4294967296", "99999999999999999999999", "-4294967296"}) {
        EXPECT_EQ(ThrownText<std::out_of_range>([=] { ParseUnsigned(text); }),
                  "stoul argument out of range")
            << text;
    }
}

TEST(Validation, ParseSignedHas32Bits) {
    EXPECT_EQ(ParseSigned(" -7x"), -7);
    EXPECT_EQ(ParseSigned("2147483647"), 2147483647);
    EXPECT_EQ(ParseSigned("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(ThrownText<std::invalid_argument>([] { ParseSigned("none"); }),
              "invalid stol argument");
    for (const char* const text : {"2147483648", "-2147483649", "99999999999999999999999"}) {
        EXPECT_EQ(ThrownText<std::out_of_range>([=] { ParseSigned(text); }),
                  "stol argument out of range")
            << text;
    }
}

TEST(Validation, TrimBlanksChangesItsTextAndReturnsIt) {
    std::string text = "  iqn.example:disk \t ";
    EXPECT_EQ(TrimBlanks(text), "iqn.example:disk \t");
    EXPECT_EQ(text, "iqn.example:disk \t");
    text = "   ";
    EXPECT_EQ(TrimBlanks(text), "");
    EXPECT_EQ(text, "");
}

TEST(Validation, IPv4IsFourNumbersUpTo255) {
    for (const char* const text :
         {"192.0.2.1", "0.0.0.0", "255.255.255.255", "001.002.003.004", "1..2.3.4", ".1.2.3.4.",
          "1.2.3.4.", "...1.2.3.4", "1.2.3.0000000000255"}) {
        EXPECT_TRUE(IsValidIPv4(text)) << text;
    }
    for (const char* const text :
         {"", ".", "....", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.2.3.999", "1.2.3.4294967297",
          "1.2.3.18446744073709551617", "1.2.3.a", "1.2.3.-4", " 1.2.3.4", "1.2.3.4 ", "1,2,3,4",
          "::1", "192.0.2.1/24"}) {
        EXPECT_FALSE(IsValidIPv4(text)) << text;
    }
}

TEST(Validation, IPv6Addresses) {
    for (const char* const text : {"::",
                                   "::1",
                                   "1::",
                                   "2001:db8::1",
                                   "2001:DB8:85A3:42:1000:8A2E:370:7334",
                                   "0000:0000:0000:0000:0000:0000:0000:0000",
                                   "1:2:3:4:5:6:7::",
                                   "1::8",
                                   "1:2:3:4:5:6::8",
                                   "1::3:4:5:6:7:8",
                                   "::2:3:4:5:6:7:8",
                                   "1:2::4:5:6:7:8",
                                   "1:2:3::5:6:7:8",
                                   "1:2:3:4::6:7:8",
                                   "1:2:3:4:5::7:8",
                                   "fe80::1%eth0",
                                   "fe80::1:2:3:4%1",
                                   "fe80:%eth0",
                                   "::192.0.2.1",
                                   "::ffff:192.0.2.1",
                                   "::ffff:0:192.0.2.1",
                                   "2001:db8:1:2::192.0.2.1",
                                   "1::255.255.255.255"}) {
        EXPECT_TRUE(IsValidIPv6(text)) << text;
        EXPECT_TRUE(IsValidAddress(text)) << text;
    }
    for (const char* const text : {"",
                                   ":",
                                   ":::",
                                   "1",
                                   "1:2:3:4:5:6:7",
                                   "1:2:3:4:5:6:7:8:9",
                                   "12345::",
                                   "g::1",
                                   "1::2::3",
                                   "192.0.2.1",
                                   " ::1",
                                   "::1 ",
                                   "fe80::1%",
                                   "fe80::1%eth-0",
                                   "fe80::1%eth0\n",
                                   "2001:db8::1%eth0",
                                   "FE80::1%eth0",
                                   "::256.1.1.1",
                                   "1:2:3:4:5::192.0.2.1",
                                   "fe80:1:2:3:4:5%eth0"}) {
        EXPECT_FALSE(IsValidIPv6(text)) << text;
    }
}

TEST(Validation, DotsOfAnEmbeddedIPv4AddressAreAnyCharacter) {
    EXPECT_TRUE(IsValidIPv6("::ffff:1a2b3c4"));
    EXPECT_TRUE(IsValidIPv6("::1%2%3%4"));
    EXPECT_TRUE(IsValidIPv6("fe80::1.2.3%4"));
    EXPECT_FALSE(IsValidIPv6("::1\n2.3.4"));
}

TEST(Validation, ZoneOfALinkLocalAddressHasAnyLength) {
    const std::string zone(30000, 'z');
    EXPECT_TRUE(IsValidIPv6("fe80::1%" + zone));
    EXPECT_TRUE(IsValidIPv6("fe80::1:2:3:4%" + std::string(200000, '4')));
    EXPECT_FALSE(IsValidIPv6("fe80::1%" + zone + "-"));
    EXPECT_FALSE(IsValidIPv6("2001:db8::1%" + zone));
    EXPECT_FALSE(IsValidIPv6("fe80::1.2.3%" + std::string(50, '4')));
}

TEST(Validation, LongTextsAreRefusedWithoutExhaustingTheStack) {
    for (const char character : {'1', ':', '.', '%', 'g', ' '}) {
        EXPECT_FALSE(IsValidIPv6(std::string(200000, character))) << character;
        EXPECT_FALSE(IsValidIPv4(std::string(200000, character))) << character;
    }
}

TEST(Validation, NumberListsHoldNumbersUpTo99999) {
    for (const char* const text : {"0", "1,2,3", "99999", ",7", "7,", "3,,5", "00099999"}) {
        EXPECT_TRUE(IsNumberList(text)) << text;
    }
    for (const char* const text :
         {"", ",", ",,", "1,2,100000", "a", "1;2", "1, 2", "-1", "4294967297"}) {
        EXPECT_FALSE(IsNumberList(text)) << text;
    }
}

TEST(Validation, HasNonDigit) {
    EXPECT_FALSE(HasNonDigit(""));
    EXPECT_FALSE(HasNonDigit("0123456789"));
    EXPECT_TRUE(HasNonDigit("3260a"));
    EXPECT_TRUE(HasNonDigit("-1"));
    EXPECT_TRUE(HasNonDigit(" 1"));
    EXPECT_TRUE(HasNonDigit("\xB2"));
}

TEST(Validation, NumberRangeIncludesItsBounds) {
    EXPECT_EQ(CheckNumberRange("4095", 4095), 0);
    EXPECT_EQ(CheckNumberRange("4096", 4095), 1);
    EXPECT_EQ(CheckNumberRange("0", 4095), 0);
    EXPECT_EQ(CheckNumberRange("000004095", 4095), 0);
    EXPECT_EQ(CheckNumberRange("-1", 4095), 1);
    EXPECT_EQ(CheckNumberRange("1a", 4095), 1);
    EXPECT_EQ(CheckNumberRange("2147483647", 2147483647), 0);
}

TEST(Validation, NumberRangeReportsWhatItCannotRead) {
    EXPECT_EQ(ThrownText<std::invalid_argument>([] { CheckNumberRange("", 4095); }),
              "invalid stol argument");
    for (const char* const text : {"2147483648", "4294967296", "99999999999999999999999"}) {
        EXPECT_EQ(ThrownText<std::out_of_range>([=] { CheckNumberRange(text, 4095); }),
                  "stol argument out of range")
            << text;
    }
}

TEST(Validation, AnUnreadableNumberIsNotInRange) {
    EXPECT_TRUE(IsNumberInRange("4094", 4094));
    for (const char* const text : {"", "4095", "2147483648", "1 ", "x"}) {
        EXPECT_FALSE(IsNumberInRange(text, 4094)) << text;
    }
}

}  // namespace
}  // namespace tavro
