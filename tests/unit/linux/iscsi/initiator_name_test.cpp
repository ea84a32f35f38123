#include "linux/iscsi/initiator_name.h"

#include <gtest/gtest.h>

#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

TEST(InitiatorNameFile, StatesItsNameInALineOfItsOwn) {
    EXPECT_EQ(ParseInitiatorName("InitiatorName=iqn.2020-01.com.example:a\n"),
              "iqn.2020-01.com.example:a");
    EXPECT_EQ(ParseInitiatorName("InitiatorName=iqn.2020-01.com.example:a"),
              "iqn.2020-01.com.example:a");
    EXPECT_EQ(ParseInitiatorName("# a remark\r\n\r\n \tInitiatorName = iqn.example:a \r\n"),
              "iqn.example:a");
}

TEST(InitiatorNameFile, HasItsFirstNameCount) {
    EXPECT_EQ(ParseInitiatorName("InitiatorName=iqn.example:a\nInitiatorName=iqn.example:b\n"),
              "iqn.example:a");
    EXPECT_EQ(ParseInitiatorName("#InitiatorName=iqn.example:a\nInitiatorName=\n"
                                 "InitiatorName=iqn.example:b\n"),
              "iqn.example:b");
}

TEST(InitiatorNameFile, MayBeginWithAMarkOfItsEncoding) {
    EXPECT_EQ(ParseInitiatorName("\xEF\xBB\xBFInitiatorName=iqn.example:a\n"), "iqn.example:a");
}

TEST(InitiatorNameFile, StatesNoneInOtherLines) {
    EXPECT_EQ(ParseInitiatorName(""), "");
    EXPECT_EQ(ParseInitiatorName("\n\n"), "");
    EXPECT_EQ(ParseInitiatorName("InitiatorName"), "");
    EXPECT_EQ(ParseInitiatorName("InitiatorName:iqn.example:a"), "");
    EXPECT_EQ(ParseInitiatorName("InitiatorNames=iqn.example:a"), "");
    EXPECT_EQ(ParseInitiatorName("initiatorname=iqn.example:a"), "");
    EXPECT_EQ(ParseInitiatorName("; InitiatorName=iqn.example:a"), "");
}

TEST(InitiatorNameFile, StatesNoneThatIsTooLongOrHasControlCharacters) {
    const std::string longest(LongestIscsiName, 'a');
    EXPECT_EQ(ParseInitiatorName("InitiatorName=" + longest), longest);
    EXPECT_EQ(ParseInitiatorName("InitiatorName=" + longest + 'a'), "");
    EXPECT_EQ(ParseInitiatorName("InitiatorName=iqn.\x1B[2Jexample"), "");
    EXPECT_EQ(ParseInitiatorName(std::string("InitiatorName=iqn.\0example", 26)), "");
}

TEST(InitiatorNameFile, IsReadUnderTheRootOfItsHost) {
    const tavrolinux_test::Tree tree;
    EXPECT_EQ(ReadInitiatorName(tree.Roots()), "");
    tree.File("etc/iscsi/initiatorname.iscsi", "InitiatorName=iqn.example:a\n");
    EXPECT_EQ(ReadInitiatorName(tree.Roots()), "iqn.example:a");
}

TEST(InitiatorNameFile, KeepsEverythingButTheNameThatChanges) {
    EXPECT_EQ(WithInitiatorName("# first\n InitiatorName = iqn.example:a \r\n# last", "eui.b"),
              "# first\n InitiatorName = eui.b \r\n# last");
    EXPECT_EQ(WithInitiatorName("InitiatorName=iqn.example:a\nInitiatorName=iqn.example:b\n",
                                "iqn.example:c"),
              "InitiatorName=iqn.example:c\nInitiatorName=iqn.example:c\n");
    EXPECT_EQ(WithInitiatorName("\xEF\xBB\xBFInitiatorName=iqn.example:a\n", "iqn.example:b"),
              "\xEF\xBB\xBFInitiatorName=iqn.example:b\n");
    // Quotes and what stands behind the name are no part of a name, so they go with the old one.
    EXPECT_EQ(WithInitiatorName("InitiatorName=\"iqn.example:a\"\n", "iqn.example:b"),
              "InitiatorName=iqn.example:b\n");
    EXPECT_EQ(WithInitiatorName("InitiatorName=iqn.example:a # remark\n", "iqn.example:b"),
              "InitiatorName=iqn.example:b\n");
}

TEST(InitiatorNameFile, GetsALineWhereItHasNone) {
    EXPECT_EQ(WithInitiatorName("", "iqn.example:a"), "InitiatorName=iqn.example:a\n");
    EXPECT_EQ(WithInitiatorName("# no name", "iqn.example:a"),
              "# no name\nInitiatorName=iqn.example:a\n");
    EXPECT_EQ(WithInitiatorName("# no name\n", "iqn.example:a"),
              "# no name\nInitiatorName=iqn.example:a\n");
    EXPECT_EQ(WithInitiatorName("# no name\r\n", "iqn.example:a"),
              "# no name\r\nInitiatorName=iqn.example:a\r\n");
    EXPECT_EQ(WithInitiatorName("# no\r\n# name", "iqn.example:a"),
              "# no\r\n# name\r\nInitiatorName=iqn.example:a\r\n");
}

TEST(InitiatorName, HasOneOfThreeForms) {
    EXPECT_TRUE(IsInitiatorName("iqn.2015-01.com.example:a1"));
    EXPECT_TRUE(IsInitiatorName("iqn.example:host"));
    EXPECT_TRUE(IsInitiatorName("eui.02004567A425678D"));
    EXPECT_TRUE(IsInitiatorName("naa.52004567BA64678D"));
    EXPECT_TRUE(IsInitiatorName("naa.62004567BA64678D0123456789ABCDEF"));
    EXPECT_FALSE(IsInitiatorName(""));
    EXPECT_FALSE(IsInitiatorName("iqn."));
    EXPECT_FALSE(IsInitiatorName("host"));
    EXPECT_FALSE(IsInitiatorName("iqn.example host"));
    EXPECT_FALSE(IsInitiatorName("iqn.example\nInitiatorName=iqn.b"));
    EXPECT_FALSE(IsInitiatorName("eui.02004567A425678"));
    EXPECT_FALSE(IsInitiatorName("eui.02004567A425678G"));
    EXPECT_FALSE(IsInitiatorName("eui.62004567BA64678D0123456789ABCDEF"));
}

TEST(InitiatorName, HasAtMost223Bytes) {
    const std::string longest = "iqn." + std::string(219, 'a');
    EXPECT_TRUE(IsInitiatorName(longest));
    EXPECT_FALSE(IsInitiatorName(longest + 'a'));
}

}  // namespace
}  // namespace tavrolinux
