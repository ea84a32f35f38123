#include "linux/iscsi/login.h"

#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

using tavroapi::LoginOptions;

const LoginOptions OfInitiator{"Yes",    "No",          "No",   "Mutual CHAP",
                               "target", "firstsecret", "host", "secondsecret"};

TEST(LoginOptions, AreToldWithoutTheirSecrets) {
    const LoginOptions told = WithoutSecrets(OfInitiator);
    EXPECT_EQ(told.authentication, "Mutual CHAP");
    EXPECT_EQ(told.targetChapName, "target");
    EXPECT_EQ(told.targetSecret, "");
    EXPECT_EQ(told.initiatorChapName, "host");
    EXPECT_EQ(told.initiatorSecret, "");
}

TEST(LoginOptions, HaveUsualValuesWhereNothingIsSaid) {
    LoginOptions login;
    login.headerDigest = "CRC32C";
    Complete(login);
    EXPECT_EQ(login.multipath, "Yes");
    EXPECT_EQ(login.headerDigest, "CRC32C");
    EXPECT_EQ(login.dataDigest, "No");
    EXPECT_EQ(login.authentication, "None");
}

TEST(EffectiveLogin, IsTheInitiatorsWhereNoAuthenticationWasSaid) {
    LoginOptions own;
    own.headerDigest = "CRC32C";
    own.authentication = "None";
    const EffectiveLogin login(own, OfInitiator);
    EXPECT_EQ(login.Options().headerDigest, "CRC32C");
    EXPECT_EQ(login.Options().authentication, "Mutual CHAP");
    EXPECT_EQ(login.Options().targetSecret, "firstsecret");
    EXPECT_EQ(login.Options().initiatorSecret, "secondsecret");
}

TEST(EffectiveLogin, HasHeaderDigestsWhereTheInitiatorHasThem) {
    LoginOptions initiator;
    initiator.headerDigest = "CRC32C";
    LoginOptions own;
    own.headerDigest = "No";
    own.authentication = "One-way CHAP";
    EXPECT_EQ(EffectiveLogin(own, initiator).Options().headerDigest, "CRC32C");
    EXPECT_EQ(EffectiveLogin(own, {}).Options().headerDigest, "No");
}

TEST(EffectiveLogin, IsTheOwnOneWhereThatHasAnAuthentication) {
    LoginOptions own;
    own.authentication = "One-way CHAP";
    own.targetChapName = "other";
    own.targetSecret = "othersecret";
    const EffectiveLogin login(own, OfInitiator);
    EXPECT_EQ(login.Options().authentication, "One-way CHAP");
    EXPECT_EQ(login.Options().targetChapName, "other");
    EXPECT_EQ(login.Options().targetSecret, "othersecret");
    EXPECT_EQ(login.Options().initiatorChapName, "");
}

TEST(EffectiveLogin, HasNoAuthenticationWhereNobodySaidOne) {
    EXPECT_EQ(EffectiveLogin({}, {}).Options().authentication, "None");
}

}  // namespace
}  // namespace tavrolinux
