#include "twin/run/secret_stand_in.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#include "tavroapi/boot_records.h"
#include "tavroapi/ethernet_records.h"
#include "tavroapi/iscsi_records.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/operation_code.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;

constexpr const char* Secret = "example-secret-1";

template <class Record>
void Replace(OperationCode code, Record& record, const std::set<std::string>& known = {}) {
    ReplaceSecrets(static_cast<std::uint32_t>(code), &record, known);
}

tavroapi::InitiatorRecord InitiatorWithSecrets() {
    tavroapi::InitiatorRecord initiator;
    initiator.name = "iqn.2015-01.com.example:host";
    initiator.login.targetChapName = "storage";
    initiator.login.targetSecret = Secret;
    initiator.login.initiatorSecret = "example-secret-2";
    return initiator;
}

TEST(ReplaceSecrets, PutsOneTextInThePlaceOfEach) {
    tavroapi::InitiatorRecord initiator = InitiatorWithSecrets();
    Replace(OperationCode::SetInitiator, initiator);
    EXPECT_EQ(initiator.login.targetSecret, "(secret)");
    EXPECT_EQ(initiator.login.initiatorSecret, "(secret)");
    EXPECT_EQ(initiator.login.targetChapName, "storage");
    EXPECT_EQ(initiator.name, "iqn.2015-01.com.example:host");
}

TEST(ReplaceSecrets, LeavesWhatTheTwinHasAndWhatIsEmpty) {
    tavroapi::InitiatorRecord initiator = InitiatorWithSecrets();
    initiator.login.initiatorSecret = "";
    Replace(OperationCode::SetInitiator, initiator, {Secret});
    EXPECT_EQ(initiator.login.targetSecret, Secret);
    EXPECT_EQ(initiator.login.initiatorSecret, "");
}

TEST(ReplaceSecrets, NeverPutsThereWhatTheTwinTakesForASecret) {
    tavroapi::InitiatorRecord initiator = InitiatorWithSecrets();
    Replace(OperationCode::SetInitiator, initiator, {"(secret)", "(secret))"});
    EXPECT_EQ(initiator.login.targetSecret, "(secret)))");
}

TEST(ReplaceSecrets, FindsThemInEveryRecordThatHasSome) {
    tavroapi::InputOf<OperationCode::AddPortal> portal;
    portal.login.targetSecret = Secret;
    Replace(OperationCode::AddPortal, portal);
    EXPECT_EQ(portal.login.targetSecret, "(secret)");
    tavroapi::PlacedTargetLogin place;
    tavroapi::TargetLoginRecord& target = place.record;
    target.login.initiatorSecret = Secret;
    Replace(OperationCode::LogInToTarget, target);
    EXPECT_EQ(target.login.initiatorSecret, "(secret)");
    namespace iscsi_boot = tavroapi::iscsi_boot;
    tavroapi::IscsiBootConfig boot;
    boot.texts.fill(Secret);
    Replace(OperationCode::WriteIscsiBoot, boot);
    EXPECT_EQ(boot.texts[iscsi_boot::ChapSecret], "(secret)");
    EXPECT_EQ(boot.texts[iscsi_boot::FirstTarget + iscsi_boot::TargetChapSecret], "(secret)");
    EXPECT_EQ(boot.texts[iscsi_boot::SecondTarget + iscsi_boot::TargetChapSecret], "(secret)");
    EXPECT_EQ(std::ranges::count(boot.texts, Secret),
              static_cast<std::ptrdiff_t>(boot.texts.size()) - 3);
}

TEST(ReplaceSecrets, PassesOverOperationsWithoutThem) {
    EXPECT_TRUE(TakesSecrets(static_cast<std::uint32_t>(OperationCode::SetInitiator)));
    EXPECT_FALSE(TakesSecrets(static_cast<std::uint32_t>(OperationCode::SetEthernetTcpIp)));
    EXPECT_FALSE(TakesSecrets(static_cast<std::uint32_t>(OperationCode::ReadInitiator)));
    EXPECT_FALSE(TakesSecrets(4711));
    ReplaceSecrets(static_cast<std::uint32_t>(OperationCode::SetInitiator), nullptr, {});
}

}  // namespace
}  // namespace tavrohost
