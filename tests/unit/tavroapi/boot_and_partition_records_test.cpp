#include <gtest/gtest.h>

#include <vector>

#include "tavroapi/boot_records.h"
#include "tavroapi/partition_records.h"
#include "unit/tavroapi/field_names.h"

namespace tavroapi {
namespace {

using tavroapi_test::FieldNames;
using tavroapi_test::Names;

TEST(BootRecords, HaveTheirFieldsInOrder) {
    EXPECT_EQ(FieldCount<IscsiBootConfig>(), 32U);
    EXPECT_EQ(FieldNames<FcoeBootConfig>(), (Names{"bootState", "secondSwitch", "text3", "numberA",
                                                   "numberB", "numberC", "targets"}));
    EXPECT_EQ(FcoeBootConfig{}.targets.size(), 8U);
    EXPECT_EQ(FieldNames<FcoeBootTarget>(), (Names{"target", "lunItem", "state"}));
}

TEST(BootRecords, TheThreeChapSecretsAreSecret) {
    for (std::size_t position = 0; position < 32; ++position) {
        EXPECT_EQ(IsSecretPosition<IscsiBootConfig>(position),
                  position == iscsi_boot::ChapSecret ||
                      position == iscsi_boot::FirstTarget + iscsi_boot::TargetChapSecret ||
                      position == iscsi_boot::SecondTarget + iscsi_boot::TargetChapSecret)
            << position;
    }
}

TEST(PartitionRecords, HaveTheirFieldsInOrder) {
    const Names names = FieldNames<PartitionConfig>();
    ASSERT_EQ(names.size(), 24U);
    EXPECT_EQ(names[0], "tag");
    EXPECT_EQ(names[1], "mode");
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(names[2 + i], "text3to6");
        EXPECT_EQ(names[6 + i], "flowControl");
        EXPECT_EQ(names[10 + i], "text11to14");
    }
    for (std::size_t i = 14; i < 22; ++i) {
        EXPECT_EQ(names[i], "functions");
    }
    EXPECT_EQ(names[22], "result");
    EXPECT_EQ(names[23], "portCount");
    EXPECT_EQ(FieldNames<PartitionFunction>(),
              (Names{"text0", "personality", "lowerLimit", "upperLimit", "text4to8", "text4to8",
                     "text4to8", "text4to8", "text4to8", "companion"}));
    EXPECT_EQ(FieldNames<PersonalitySetting>(), (Names{"value", "result"}));
}

TEST(PartitionRecords, CarryACompletionCode) {
    PartitionConfig config;
    config.*PartitionConfig::CompletionCode() = 5;
    EXPECT_EQ(config.result, 5);
    PersonalitySetting setting;
    setting.*PersonalitySetting::CompletionCode() = 201;
    EXPECT_EQ(setting.result, 201);
}

}  // namespace
}  // namespace tavroapi
