#include "tavroapi/fcoe_records.h"

#include <gtest/gtest.h>

#include <vector>

#include "tavroapi/dcb_records.h"
#include "unit/tavroapi/field_names.h"

namespace tavroapi {
namespace {

using tavroapi_test::FieldNames;

TEST(FcoeRecords, HaveAsManyFieldsAsTheLibraryFills) {
    EXPECT_EQ(FieldCount<FcoePortRecord>(), 28U);
    EXPECT_EQ(FieldCount<FcoeStatisticsRecord>(), 30U);
    EXPECT_EQ(FieldCount<FcoeTargetRecord>(), 11U);
    EXPECT_EQ(FieldCount<FcoeTargetInfoRecord>(), 7U);
    EXPECT_EQ(FieldCount<FcoeBindingRecord>(), 8U);
    EXPECT_EQ(FieldCount<FcoeLunRecord>(), 11U);
    EXPECT_EQ(FieldCount<FcoePingRequest>(), 3U);
    EXPECT_EQ(FieldCount<FcoePingResult>(), 6U);
    EXPECT_EQ(FieldCount<FipConfig>(), 3U);
    EXPECT_EQ(FieldCount<VirtualPortRecord>(), 14U);
    EXPECT_EQ(FieldCount<VirtualPortRequest>(), 18U);
    EXPECT_EQ(FieldCount<VirtualPortQuery>(), 2U);
    EXPECT_EQ(FieldCount<VirtualPortTargetRecord>(), 11U);
    EXPECT_EQ(FieldCount<VirtualPortLunRecord>(), 12U);
}

TEST(FcoeRecords, NamedTextsStandAtTheirPositions) {
    const auto port = FieldNames<VirtualPortRecord>();
    EXPECT_EQ(port[1], "portWwn");
    EXPECT_EQ(port[13], "fabricPriority");
    const auto request = FieldNames<VirtualPortRequest>();
    EXPECT_EQ(request[1], "portWwn");
    EXPECT_EQ(request[3], "physicalPort");
    const auto target = FieldNames<VirtualPortTargetRecord>();
    EXPECT_EQ(target[1], "fcid");
    EXPECT_EQ(target[9], "scsiBus");
    EXPECT_EQ(target[10], "scsiTarget");
    const auto lun = FieldNames<VirtualPortLunRecord>();
    EXPECT_EQ(lun[7], "status");
    EXPECT_EQ(lun[11], "targetPortWwn");
    EXPECT_EQ(FieldNames<FipConfig>()[2], "vlanId");
}

TEST(DcbRecords, TextsAndListsStandInOneRow) {
    EXPECT_EQ(FieldCount<DcbConfig>(), 7U);
    const auto names = FieldNames<DcbInfo>();
    ASSERT_EQ(names.size(), 22U);
    EXPECT_EQ(names[3], "summary");
    EXPECT_EQ(names[4], "local");
    EXPECT_EQ(names[9], "local");
    EXPECT_EQ(names[10], "localGroupMap");
    EXPECT_EQ(names[11], "localBandwidths");
    EXPECT_EQ(names[12], "localPriorities");
    EXPECT_EQ(names[13], "peer");
    EXPECT_EQ(names[19], "peerGroupMap");
    EXPECT_EQ(names[21], "peerPriorities");
    EXPECT_EQ(FieldCount<DcbPriority>(), 2U);
}

}  // namespace
}  // namespace tavroapi
