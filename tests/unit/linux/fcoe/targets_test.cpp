#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>

#include "tavroapi/fcoe_records.h"
#include "unit/linux/fcoe/sample_fabric.h"

namespace tavrolinux {
namespace {

using tavroapi::OperationCode;
using tavrolinux_test::FirstTarget;
using tavrolinux_test::SampleFabric;
using tavrolinux_test::SecondTarget;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

std::list<tavroapi::FcoeTargetRecord> TargetsOf(const SampleFabric& fabric) {
    std::list<tavroapi::FcoeTargetRecord> records(1);
    EXPECT_TRUE((fabric.Serve<OperationCode::ListFcoeTargets>(nullptr, records).IsDone()));
    return records;
}

std::vector<std::string> NamesOf(const std::list<tavroapi::FcoeTargetRecord>& records) {
    std::vector<std::string> names;
    for (const auto& record : records) {
        names.push_back(record.texts[tavroapi::fcoe_target::PortWwn]);
    }
    return names;
}

TEST(FcoeTargets, TellEveryPositionInTheOrderOfTheirNumbers) {
    const auto records = TargetsOf(SampleFabric());
    ASSERT_EQ(records.size(), 2U);
    EXPECT_THAT(records.front().texts,
                ElementsAreArray({"", "010202", FirstTarget.c_str(), "50:00:02:00:5E:40:00:FF",
                                  "FCP Target", "Online", "Class 3", "FCP", "", "0", "5"}));
    EXPECT_THAT(records.back().texts,
                ElementsAreArray({"", "010203", SecondTarget.c_str(), "50:00:02:00:5E:40:00:FF",
                                  "FCP Target", "Online", "Class 3", "FCP", "", "0", "7"}));
}

TEST(FcoeTargets, AreTheTargetsOfThisHostThatAreThere) {
    const SampleFabric fabric;
    fabric.MakeTarget("rport-3:0-0", "0x500002005e400003", "0xfffffc", "-1", "Directory Server");
    fabric.MakeTarget("rport-3:0-1", "0x500002005e400004", "0x010204", "1", "FCP Initiator");
    fabric.MakeTarget("rport-3:0-3", "0x500002005e400005", "0x010205", "2", "FCP Target",
                      "Not Present");
    fabric.MakeTarget("rport-30:0-3", "0x500002005e400006", "0x010206", "3");
    fabric.MakeTarget("rport-3:1-1", "0x500002005e400007", "0x010207", "-1",
                      "FCP Target, FCP Initiator", "Blocked");
    const auto records = TargetsOf(fabric);
    EXPECT_THAT(NamesOf(records),
                ElementsAre(FirstTarget, SecondTarget, "50:00:02:00:5E:40:00:07"));
    EXPECT_EQ(records.back().texts[tavroapi::fcoe_target::Role], "FCP Target, FCP Initiator");
    EXPECT_EQ(records.back().texts[tavroapi::fcoe_target::State], "Blocked");
    EXPECT_EQ(records.back().texts[tavroapi::fcoe_target::ScsiBus], "1");
    EXPECT_EQ(records.back().texts[tavroapi::fcoe_target::ScsiTarget], "");
}

// The input is the name itself, as characters up to a zero.
template <OperationCode Code, class Output>
Outcome ServeNamed(const SampleFabric& fabric, std::string name, Output& output) {
    return fabric.Serve<Code>(name.data(), output);
}

TEST(FcoeTarget, TellsEveryPosition) {
    const SampleFabric fabric;
    tavroapi::FcoeTargetInfoRecord record;
    ASSERT_TRUE(ServeNamed<OperationCode::ReadFcoeTarget>(fabric, FirstTarget, record).IsDone());
    EXPECT_THAT(record.texts, ElementsAreArray({"", FirstTarget.c_str(), "50:00:02:00:5E:40:00:FF",
                                                "010202", "Online", "Class 3", "FCP"}));
}

TEST(FcoeTarget, IsNamedByItsPortWwnAlone) {
    const SampleFabric fabric;
    for (const char* name : {"", "disk", "50:00:02:00:5E:40:00:09", "50:00:02:00:5E:40:00:FF"}) {
        tavroapi::FcoeTargetInfoRecord record;
        const auto outcome = ServeNamed<OperationCode::ReadFcoeTarget>(fabric, name, record);
        EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::UnknownFcoeTarget)) << name;
        std::list<tavroapi::FcoeLunRecord> luns;
        EXPECT_EQ(ServeNamed<OperationCode::ListFcoeLuns>(fabric, name, luns).status,
                  static_cast<std::uint32_t>(Status::UnknownFcoeTarget))
            << name;
    }
}

TEST(FcoeLuns, TellEveryPositionInTheOrderOfTheirNumbers) {
    const SampleFabric fabric;
    const std::string target = fabric.host + "/rport-3:0-2/target3:0:5";
    const auto unit = [&](const char* number, const char* type, const char* state) {
        const std::string folder = target + "/3:0:5:" + number;
        fabric.Files(folder, {{"vendor", "Vendor A"},
                              {"model", "Array"},
                              {"rev", "0102"},
                              {"type", type},
                              {"state", state}});
        return folder;
    };
    const std::string disk = unit("10", "0", "running") + "/block/sdb";
    fabric.Files(disk, {{"size", "4194304"}});
    fabric.Files(disk + "/queue", {{"logical_block_size", "4096"}});
    unit("2", "1", "offline");
    // Not a unit, and a unit of another target.
    fabric.tree.Directory(target + "/power");
    fabric.Files(fabric.host + "/rport-3:0-10/target3:0:7/3:0:7:0", {{"vendor", "Other"}});
    std::list<tavroapi::FcoeLunRecord> records(1);
    ASSERT_TRUE((ServeNamed<OperationCode::ListFcoeLuns>(fabric, FirstTarget, records).IsDone()));
    ASSERT_EQ(records.size(), 2U);
    EXPECT_THAT(records.front().texts, ElementsAreArray({"2", "Vendor A", "Array", "0102", "", "",
                                                         "", "Offline", "2", "", "Tape Drive"}));
    EXPECT_THAT(records.back().texts,
                ElementsAreArray({"10", "Vendor A", "Array", "0102", "2 GB", "4096", "", "Online",
                                  "10", "/dev/sdb", "Disk"}));
}

TEST(FcoeLuns, AreNoneWhileTheTargetHasNoPlaceOnTheBus) {
    const SampleFabric fabric;
    fabric.MakeTarget("rport-3:0-11", "0x500002005e400003", "0x010205", "-1");
    std::list<tavroapi::FcoeLunRecord> records(1);
    ASSERT_TRUE(
        (ServeNamed<OperationCode::ListFcoeLuns>(fabric, "500002005E400003", records).IsDone()));
    EXPECT_THAT(records, IsEmpty());
}

TEST(FcoeBindings, AreNone) {
    std::list<tavroapi::FcoeBindingRecord> records(1);
    ASSERT_TRUE((SampleFabric().Serve<OperationCode::ListFcoeBindings>(nullptr, records).IsDone()));
    EXPECT_THAT(records, IsEmpty());
}

TEST(FcoeOperations, WantTheWwnOfAnFcoeFunction) {
    const SampleFabric fabric;
    for (const char* other : {"10:00:02:00:5E:10:00:05", "02-00-5E-10-00-00", ""}) {
        std::list<tavroapi::FcoeTargetRecord> records;
        EXPECT_EQ((fabric.Serve<OperationCode::ListFcoeTargets>(nullptr, records, other).status),
                  static_cast<std::uint32_t>(Status::UnknownIdentifier))
            << other;
    }
}

}  // namespace
}  // namespace tavrolinux
