#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "linux/system/host_name.h"
#include "tavroapi/fcoe_records.h"
#include "unit/linux/fcoe/sample_fabric.h"

namespace tavrolinux {
namespace {

using tavroapi::FcoePortRecord;
using tavroapi::FcoeStatisticsRecord;
using tavroapi::OperationCode;
using tavrolinux_test::PortOfHost;
using tavrolinux_test::SampleFabric;
using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

FcoePortRecord PortOf(const SampleFabric& fabric) {
    FcoePortRecord record;
    EXPECT_TRUE((fabric.Serve<OperationCode::ReadFcoePort>(nullptr, record).IsDone()));
    return record;
}

// The number of a position is what programs count by, so it stands here as a number.
TEST(FcoePort, EveryPositionTellsItsOwnFact) {
    const std::map<std::size_t, std::string> expected{
        {0, PortOfHost},
        {1, "20:00:02:00:5E:10:00:04"},
        {2, PortOfHost},
        {3, "10:00:02:00:5E:FC:00:01"},
        {4, "Model 7"},
        {5, "SN0042"},
        {6, "1.2"},
        {7, "samplefcoe"},
        {8, "rev 3"},
        {9, "4.5"},
        {10, "8.30"},
        {11, "Up"},
        {12, "VN_Port"},
        {13, "010300"},
        {14, "10 Gbps"},
        {15, "Class 3"},
        {16, "0000010000000001" + std::string(48, '0')},
        {17, "2"},
        {18, "2112"},
        {19, "1 Gbps, 10 Gbps"},
        {20, "host3"},
        {21, ReadHostName()},
        {22, "0E-FC-00-01-03-00"},
        {23, "02-00-5E-FC-00-01"},
        {24, "10:00:02:00:5E:FC:00:01"},
        {26, "0EFC00"},
        {27, "1002"},
    };
    const FcoePortRecord told = PortOf(SampleFabric());
    for (std::size_t position = 0; position < told.texts.size(); ++position) {
        const auto fact = expected.find(position);
        EXPECT_EQ(told.texts.at(position), fact == expected.end() ? "" : fact->second) << position;
    }
}

TEST(FcoePort, TellsNothingOfWhatTheKernelDoesNotKnow) {
    const SampleFabric fabric;
    fabric.Files(fabric.attributes, {{"node_name", "0x0"},
                                     {"fabric_name", "0xffffffffffffffff"},
                                     {"port_id", "0x000000"},
                                     {"port_state", "Linkdown"},
                                     {"port_type", "Unknown"},
                                     {"speed", "unknown"},
                                     {"supported_speeds", "unknown"},
                                     {"supported_classes", "unspecified"},
                                     {"supported_fc4s", ""},
                                     {"maxframe_size", "unknown"},
                                     {"model", ""},
                                     {"serial_number", "Unknown"}});
    fabric.Files(fabric.host + "/scsi_host/host3", {{"proc_name", "(null)"}});
    fabric.Files(fabric.controller + "/fcf_11", {{"selected", "0"}});
    const std::map<std::size_t, std::string> expected{
        {0, PortOfHost}, {2, PortOfHost}, {4, "Example adapter"}, {6, "1.2"},   {7, "sampledrv"},
        {8, "rev 3"},    {9, "4.5"},      {10, "8.30"},           {11, "Down"}, {14, "None"},
        {17, "2"},       {20, "host3"},   {21, ReadHostName()},
    };
    const FcoePortRecord told = PortOf(fabric);
    for (std::size_t position = 0; position < told.texts.size(); ++position) {
        const auto fact = expected.find(position);
        EXPECT_EQ(told.texts.at(position), fact == expected.end() ? "" : fact->second) << position;
    }
    fabric.Files(fabric.attributes, {{"port_state", "Online"}});
    EXPECT_EQ(PortOf(fabric).texts[tavroapi::fcoe_port::LinkSpeed], "Unknown");
}

TEST(FcoePort, IsRefusedOnceTheHostIsGone) {
    const SampleFabric fabric;
    const Machine machine(fabric.tree.Roots(), {{"Example adapter", {fabric.Port()}}});
    StateStore state(fabric.tree.Roots());
    std::filesystem::remove_all(fabric.tree.Placed(fabric.host));
    FcoePortRecord record;
    const auto* const operation =
        FindOperation(static_cast<std::uint32_t>(OperationCode::ReadFcoePort));
    EXPECT_THROW(operation->serve({machine, state}, PortOfHost, nullptr, &record), SystemFailure);
}

// The interface as it is found: name, port WWN, node WWN.
std::vector<std::string> HostOn(const SampleFabric& fabric, const std::string& interface) {
    const Interface port = fabric.Port(interface);
    return {port.fcHost.value_or("none"), port.portWwn, port.nodeWwn};
}

TEST(FibreChannelHost, IsFoundOnTheVlanOfAnInterface) {
    const SampleFabric fabric;
    EXPECT_THAT(HostOn(fabric, "eth0"),
                ElementsAre("host3", PortOfHost, "20:00:02:00:5E:10:00:04"));
    EXPECT_THAT(HostOn(fabric, "eth1"), ElementsAre("none", "", ""));
}

TEST(FibreChannelHost, IsFoundOnTheInterfaceWithAndWithoutAController) {
    const SampleFabric fabric;
    for (const auto& [number, place] : std::vector<std::pair<std::string, std::string>>{
             {"12", "/net/eth1/ctlr_2"}, {"10", "/net/eth1"}}) {
        const std::string folder = fabric.nic + place + "/host" + number + "/fc_host/host" + number;
        fabric.Files(folder, {{"port_name", "0x100002005e1000" + number}});
        fabric.List("fc_host", folder);
        EXPECT_THAT(HostOn(fabric, "eth1"),
                    ElementsAre("host" + number, "10:00:02:00:5E:10:00:" + number, ""));
    }
}

TEST(FibreChannelHost, IsFoundOnTheDeviceOfTheFirstPort) {
    const SampleFabric fabric;
    const std::string folder = fabric.nic + "/host2/fc_host/host2";
    fabric.Files(folder, {{"port_name", "0x100002005e100002"}});
    fabric.List("fc_host", folder);
    EXPECT_EQ(HostOn(fabric, "eth0").front(), "host2");
    Interface second = fabric.Port();
    second.devicePort = 1;
    second.fcHost.reset();
    TakeFibreChannelHost(fabric.tree.Roots(), second);
    EXPECT_THAT(second.fcHost, Optional(Eq("host3")));
}

TEST(FibreChannelHost, IsNoneOfAnotherPortAndNoneWithoutAName) {
    const SampleFabric fabric;
    // A virtual port below the host is none of the interface's own.
    const std::string virtualPort = fabric.host + "/vport-3:0-0/host1/fc_host/host1";
    fabric.Files(virtualPort, {{"port_name", "0x200102005e100004"}});
    fabric.List("fc_host", virtualPort);
    EXPECT_EQ(HostOn(fabric, "eth0").front(), "host3");
    // Nor is a host on what stands on the interface and is no VLAN.
    fabric.Files(fabric.nic + "/net/eth0.1002", {{"uevent", "DEVTYPE=macvlan"}});
    EXPECT_EQ(HostOn(fabric, "eth0").front(), "none");
    fabric.Files(fabric.nic + "/net/eth0.1002", {{"uevent", "DEVTYPE=vlan"}});
    fabric.Files(fabric.attributes, {{"port_name", "0x0"}});
    EXPECT_EQ(HostOn(fabric, "eth0").front(), "none");
}

constexpr const char* CounterNames[] = {"seconds_since_last_reset",
                                        "tx_frames",
                                        "tx_words",
                                        "rx_frames",
                                        "rx_words",
                                        "lip_count",
                                        "nos_count",
                                        "error_frames",
                                        "dumped_frames",
                                        "link_failure_count",
                                        "loss_of_sync_count",
                                        "loss_of_signal_count",
                                        "prim_seq_protocol_err_count",
                                        "invalid_tx_word_count",
                                        "invalid_crc_count",
                                        "fcp_input_requests",
                                        "fcp_output_requests",
                                        "fcp_control_requests",
                                        "fcp_input_megabytes",
                                        "fcp_output_megabytes"};

// Each counter has a value of its own: 0x100, 0x101 and so on.
void WriteCounters(const SampleFabric& fabric) {
    std::size_t number = 0;
    for (const char* name : CounterNames) {
        fabric.Files(fabric.attributes + "/statistics",
                     {{name, "0x1" + std::to_string(number / 10) + std::to_string(number % 10)}});
        ++number;
    }
    fabric.Files(fabric.attributes + "/statistics",
                 {{"fcp_packet_aborts", "0x3"}, {"reset_statistics", ""}});
}

TEST(FcoeStatistics, EveryPositionTellsItsOwnCounterInDecimal) {
    const SampleFabric fabric;
    WriteCounters(fabric);
    const std::vector<std::string> expected{"256", "257", "258", "259", "260", "261", "262", "263",
                                            "264", "265", "272", "273", "274", "275", "276", "277",
                                            "278", "279", "280", "281", "",    "",    "6",   "",
                                            "",    "",    "3",   "",    "",    "4"};
    std::uint32_t number = 0;
    FcoeStatisticsRecord record;
    ASSERT_TRUE((fabric.Serve<OperationCode::ReadFcoeStatistics>(&number, record).IsDone()));
    for (std::size_t position = 0; position < record.texts.size(); ++position) {
        EXPECT_EQ(record.texts.at(position), expected.at(position)) << position;
    }
}

TEST(FcoeStatistics, AreEmptyWhereTheDriverDoesNotCount) {
    const SampleFabric fabric;
    WriteCounters(fabric);
    fabric.Files(fabric.attributes + "/statistics",
                 {{"lip_count", "0xffffffffffffffff"}, {"nos_count", "0x0"}, {"rx_words", "?"}});
    std::uint32_t number = 0;
    FcoeStatisticsRecord record;
    ASSERT_TRUE((fabric.Serve<OperationCode::ReadFcoeStatistics>(&number, record).IsDone()));
    EXPECT_EQ(record.texts[tavroapi::fcoe_statistics::LoopInitializations], "");
    EXPECT_EQ(record.texts[tavroapi::fcoe_statistics::NotOperationalSequences], "0");
    EXPECT_EQ(record.texts[tavroapi::fcoe_statistics::ReceivedWords], "");
}

TEST(FcoeStatistics, AreResetByTheKernelAndThenRead) {
    const SampleFabric fabric;
    WriteCounters(fabric);
    std::uint32_t number = 0;
    FcoeStatisticsRecord record;
    ASSERT_TRUE((fabric.Serve<OperationCode::ResetFcoeStatistics>(&number, record).IsDone()));
    EXPECT_THAT(
        tavrolib_test::Read(fabric.tree.Placed(fabric.attributes) / "statistics/reset_statistics"),
        testing::StartsWith("1"));
    EXPECT_EQ(record.texts[tavroapi::fcoe_statistics::TransmittedFrames], "257");
}

TEST(FcoeStatistics, AreNotResetByADriverThatCannot) {
    const SampleFabric fabric;
    std::uint32_t number = 0;
    FcoeStatisticsRecord record;
    const auto outcome = fabric.Serve<OperationCode::ResetFcoeStatistics>(&number, record);
    EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::NotOffered));
    EXPECT_THAT(outcome.error.value().details,
                testing::HasSubstr(L"resetting the statistics of host3"));
}

}  // namespace
}  // namespace tavrolinux
