#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "simulator/host/host_file.h"
#include "simulator/host/restart.h"
#include "simulator/model/model.h"
#include "tavroapi/partition_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::PartitionConfig;
using tavroapi::PersonalitySetting;
using tavrolib::Outcome;

constexpr std::uint32_t Unknown = 36871;
constexpr std::uint32_t InvalidValue = 37889;

constexpr const char* PartitionMac = "02-00-5E-10-00-00";
constexpr const char* SecondPortMac = "02-00-5E-10-00-01";

constexpr const char* PartitionHost = R"({
  "name": "h",
  "initiator": {"name": "iqn.example:h"},
  "adapters": [
    {"name": "A", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
      {"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
        {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {}},
        {"number": 4, "mac": "02-00-5E-10-00-04",
         "fcoe": {"portWwn": "10:00:02:00:5E:10:00:04", "nodeWwn": "20:00:02:00:5E:10:00:04"}}]},
      {"name": "Port 2", "functions": [
        {"number": 1, "mac": "02-00-5E-10-00-01", "ethernet": {"interface": "eth1"}}]}]},
    {"name": "B", "number": 1, "type": "CNA", "partitionState": 2, "ports": [
      {"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-20-00-00", "ethernet": {"interface": "eth2"}}]}]},
    {"name": "C", "number": 2, "type": "Ethernet", "partitionState": 1, "ports": [
      {"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-30-00-00", "ethernet": {"interface": "eth3"}}]}]},
    {"name": "D", "number": 3, "type": "CNA", "partitionState": 3,
     "partitions": {"completionCode": 201, "mode": "MF", "flowControl": ["Disabled"],
       "functions": [{"personality": "FCoE", "lowerLimit": "10", "upperLimit": "20"}]},
     "ports": [
      {"name": "Port 1", "resources": {"completionCode": 201, "personality": "FCoE"}, "functions": [
        {"number": 0, "mac": "02-00-5E-40-00-00", "ethernet": {"interface": "eth4"}}]}]}]
})";

class PartitionModel : public testing::Test {
  protected:
    Outcome Perform(OperationCode code, const char* request, void* record) {
        const OperationModel& model = *FindModel(static_cast<std::uint32_t>(code));
        if (model.read != nullptr) {
            return model.read(host, request, nullptr, record);
        }
        Host copy = host;
        Outcome outcome = model.change(copy, request, record, nullptr);
        if (outcome.IsDone()) {
            // What is kept survives the host file.
            host = HostFromText(TextFromHost(copy));
        }
        return outcome;
    }

    PartitionConfig ReadPartitions(const char* mac = PartitionMac) {
        PartitionConfig config;
        EXPECT_TRUE(Perform(OperationCode::ReadPartitions, mac, &config).IsDone());
        return config;
    }

    std::string ReadPersonality(const char* mac = PartitionMac) {
        PersonalitySetting setting;
        EXPECT_TRUE(Perform(OperationCode::ReadPersonality, mac, &setting).IsDone());
        return setting.value;
    }

    Host host = HostFromText(PartitionHost);
};

PartitionConfig Sample(const char* mode = "2") {
    PartitionConfig config;
    config.tag = "7";
    config.mode = mode;
    config.flowControl = {"4", "1", "", ""};
    constexpr std::array Personalities{"3", "5", "9"};
    for (std::size_t i = 0; i < config.functions.size(); ++i) {
        config.functions[i].personality = Personalities[i % 3];
        config.functions[i].lowerLimit = std::to_string(i);
        config.functions[i].upperLimit = std::to_string(93 + i);
    }
    config.portCount = 2;
    return config;
}

TEST_F(PartitionModel, AnAdapterStartsUndivided) {
    const PartitionConfig config = ReadPartitions();
    EXPECT_EQ(config.mode, "SF");
    EXPECT_EQ(config.portCount, 2);
    EXPECT_EQ(config.flowControl, (std::array<std::string, 4>{"Auto", "Auto", "Auto", "Auto"}));
    for (const auto& function : config.functions) {
        EXPECT_EQ(function.personality, "Ethernet");
        EXPECT_EQ(function.lowerLimit, "0");
        EXPECT_EQ(function.upperLimit, "100");
        EXPECT_EQ(function.companion, "16");
    }
}

TEST_F(PartitionModel, APartitionedAdapterSaysSo) {
    EXPECT_EQ(ReadPartitions("02-00-5E-20-00-00").mode, "MF");
}

TEST_F(PartitionModel, FunctionsTellTheirIdentifiers) {
    const PartitionConfig config = ReadPartitions(SecondPortMac);
    using FunctionTexts = std::array<std::string, 5>;
    EXPECT_EQ(config.functions[0].libraryTexts4To8,
              (FunctionTexts{"02-00-5E-10-00-00", "", "eth0", "", "Yes"}));
    EXPECT_EQ(config.functions[2].libraryTexts4To8,
              (FunctionTexts{"02-00-5E-10-00-02", "", "", "iqn.example:h", "Yes"}));
    EXPECT_EQ(config.functions[4].libraryTexts4To8,
              (FunctionTexts{"02-00-5E-10-00-04", "10:00:02:00:5E:10:00:04", "", "", "Yes"}));
    EXPECT_EQ(config.functions[7].libraryTexts4To8, (FunctionTexts{"", "", "", "", "No"}));
}

TEST_F(PartitionModel, CodesAreKeptAsNames) {
    PartitionConfig config = Sample();
    config.result = -1;
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_EQ(config.result, 0);
    const PartitionConfig now = ReadPartitions(SecondPortMac);
    EXPECT_EQ(now.mode, "MF");
    EXPECT_EQ(now.flowControl,
              (std::array<std::string, 4>{"Disabled", "Tx Enabled", "Auto", "Auto"}));
    constexpr std::array Names{"Ethernet", "iSCSI", "FCoE"};
    constexpr std::array Companions{"16", "0", "0"};
    for (std::size_t i = 0; i < now.functions.size(); ++i) {
        EXPECT_EQ(now.functions[i].personality, Names[i % 3]);
        EXPECT_EQ(now.functions[i].companion, Companions[i % 3]);
        EXPECT_EQ(now.functions[i].lowerLimit, std::to_string(i));
        EXPECT_EQ(now.functions[i].upperLimit, std::to_string(93 + i));
    }
}

TEST_F(PartitionModel, TheModeDecidesThePartitionState) {
    PartitionConfig config = Sample();
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_EQ(host.adapters[0].partitionState, tavroapi::Partitioned);
    config = Sample("0");
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_EQ(host.adapters[0].partitionState, tavroapi::NotPartitioned);
    EXPECT_EQ(ReadPartitions().mode, "SF");
}

TEST_F(PartitionModel, TheHostFileTellsTheCompletionCode) {
    const char* const mac = "02-00-5E-40-00-00";
    const PartitionConfig before = ReadPartitions(mac);
    EXPECT_EQ(before.mode, "MF");
    EXPECT_EQ(before.flowControl[0], "Disabled");
    EXPECT_EQ(before.functions[0].personality, "FCoE");
    EXPECT_EQ(before.functions[0].companion, "0");
    EXPECT_EQ(before.functions[0].lowerLimit, "10");
    EXPECT_EQ(before.functions[1].upperLimit, "100");
    PartitionConfig config = Sample();
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, mac, &config).IsDone());
    EXPECT_EQ(config.result, tavroapi::AppliedAtRestart);
    EXPECT_EQ(ReadPartitions(mac).functions[1].upperLimit, "100");
    Restart(host);
    EXPECT_EQ(ReadPartitions(mac).functions[1].upperLimit, "94");

    host.adapters[3].partitions->completionCode = 5;
    config = Sample("0");
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, mac, &config).IsDone());
    EXPECT_EQ(config.result, tavroapi::ValueRefused);
    EXPECT_EQ(ReadPartitions(mac).mode, "MF");
    EXPECT_EQ(host.adapters[3].partitionState, tavroapi::Partitioned);
}

TEST_F(PartitionModel, ValuesThatAreNoneAreRefused) {
    const auto refuse = [&](auto spoil) {
        PartitionConfig config = Sample();
        spoil(config);
        EXPECT_EQ(Perform(OperationCode::WritePartitions, PartitionMac, &config).status,
                  InvalidValue);
    };
    refuse([](PartitionConfig& config) { config.mode = "1"; });
    refuse([](PartitionConfig& config) { config.mode = "SF"; });
    refuse([](PartitionConfig& config) { config.flowControl[0] = "5"; });
    refuse([](PartitionConfig& config) { config.flowControl[1] = "Auto"; });
    refuse([](PartitionConfig& config) { config.functions[7].personality = "iSCSI"; });
    for (const char* limit : {"", "101", "1000", "-1", "1.", "x"}) {
        refuse([=](PartitionConfig& config) { config.functions[3].lowerLimit = limit; });
        refuse([=](PartitionConfig& config) { config.functions[3].upperLimit = limit; });
    }
    EXPECT_EQ(host.adapters[0].partitionState, tavroapi::NotPartitioned);
}

TEST_F(PartitionModel, FixedPartitionsStay) {
    PartitionConfig config = Sample();
    const Outcome outcome = Perform(OperationCode::WritePartitions, "02-00-5E-20-00-00", &config);
    EXPECT_EQ(outcome.status, 37890U);
    EXPECT_EQ(outcome.error->message, L"The partitions of this adapter are fixed.");
}

TEST_F(PartitionModel, PersonalitiesAreKeptByPort) {
    EXPECT_EQ(ReadPersonality(), "iSCSI");
    PersonalitySetting setting{.value = "2", .result = -1};
    ASSERT_TRUE(Perform(OperationCode::WritePersonality, "02-00-5E-10-00-02", &setting).IsDone());
    EXPECT_EQ(setting.result, 0);
    EXPECT_EQ(ReadPersonality(), "FCoE");
    EXPECT_EQ(ReadPersonality(SecondPortMac), "iSCSI");
    setting.value = "1";
    ASSERT_TRUE(Perform(OperationCode::WritePersonality, PartitionMac, &setting).IsDone());
    EXPECT_EQ(ReadPersonality(), "iSCSI");
    for (const char* value : {"", "0", "3", "iSCSI"}) {
        setting.value = value;
        EXPECT_EQ(Perform(OperationCode::WritePersonality, PartitionMac, &setting).status,
                  InvalidValue);
    }
}

TEST_F(PartitionModel, ThePersonalitysCompletionCodeComesFromTheHostFile) {
    host.adapters[3].partitionState = tavroapi::NotPartitioned;
    const char* const mac = "02-00-5E-40-00-00";
    EXPECT_EQ(ReadPersonality(mac), "FCoE");
    PersonalitySetting setting{.value = "1", .result = 0};
    ASSERT_TRUE(Perform(OperationCode::WritePersonality, mac, &setting).IsDone());
    EXPECT_EQ(setting.result, tavroapi::AppliedAtRestart);
    EXPECT_EQ(ReadPersonality(mac), "FCoE");
    Restart(host);
    EXPECT_EQ(ReadPersonality(mac), "iSCSI");

    host.adapters[3].ports[0].resources->completionCode = 5;
    setting.value = "2";
    ASSERT_TRUE(Perform(OperationCode::WritePersonality, mac, &setting).IsDone());
    EXPECT_EQ(setting.result, tavroapi::ValueRefused);
    EXPECT_EQ(ReadPersonality(mac), "iSCSI");
}

TEST_F(PartitionModel, ASecondChangeBuildsOnThePendingOne) {
    host.adapters[0].partitions.emplace().completionCode = tavroapi::AppliedAtRestart;
    PartitionConfig config = Sample();
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_EQ(config.result, tavroapi::AppliedAtRestart);
    config.functions[2].personality = "9";
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_EQ(config.result, tavroapi::AppliedAtRestart);
    EXPECT_EQ(ReadPartitions().mode, "SF");
    Restart(host);
    const PartitionConfig now = ReadPartitions();
    EXPECT_EQ(now.mode, "MF");
    EXPECT_EQ(now.flowControl[0], "Disabled");
    EXPECT_EQ(now.functions[2].personality, "FCoE");
    EXPECT_EQ(now.functions[7].personality, "iSCSI");
}

TEST_F(PartitionModel, AChangeBackToWhatIsInForceTakesThePendingOneAway) {
    Partitions& inForce = host.adapters[0].partitions.emplace();
    inForce.completionCode = tavroapi::AppliedAtRestart;
    inForce.flowControl = {"Disabled", "Tx Enabled", "Auto", "Auto"};
    host.adapters[0].ports[0].resources =
        Resources{.completionCode = tavroapi::AppliedAtRestart, .pendingPersonality = {}};
    PartitionConfig config = Sample();
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_TRUE(host.adapters[0].pendingPartitions);
    config = Sample("0");
    ASSERT_TRUE(Perform(OperationCode::WritePartitions, PartitionMac, &config).IsDone());
    EXPECT_EQ(config.result, 0);
    EXPECT_FALSE(host.adapters[0].pendingPartitions);

    PersonalitySetting setting{.value = "2", .result = -1};
    ASSERT_TRUE(Perform(OperationCode::WritePersonality, PartitionMac, &setting).IsDone());
    EXPECT_EQ(setting.result, tavroapi::AppliedAtRestart);
    setting.value = "1";
    ASSERT_TRUE(Perform(OperationCode::WritePersonality, PartitionMac, &setting).IsDone());
    EXPECT_EQ(setting.result, 0);
    Restart(host);
    EXPECT_EQ(ReadPartitions().mode, "SF");
    EXPECT_EQ(ReadPersonality(), "iSCSI");
}

TEST_F(PartitionModel, PartitionedAndEthernetPortsHaveNoPersonality) {
    for (const char* mac : {"02-00-5E-20-00-00", "02-00-5E-30-00-00", "02-00-5E-40-00-00"}) {
        PersonalitySetting setting{.value = "1", .result = 0};
        EXPECT_EQ(Perform(OperationCode::ReadPersonality, mac, &setting).status, 37891U) << mac;
        EXPECT_EQ(Perform(OperationCode::WritePersonality, mac, &setting).status, 37891U) << mac;
    }
}

TEST_F(PartitionModel, UnknownIdentifiersAreRefused) {
    PartitionConfig config = Sample();
    PersonalitySetting setting{.value = "1", .result = 0};
    for (const char* mac : {"02-00-5E-99-99-99", ""}) {
        EXPECT_EQ(Perform(OperationCode::ReadPartitions, mac, &config).status, Unknown);
        EXPECT_EQ(Perform(OperationCode::WritePartitions, mac, &config).status, Unknown);
        EXPECT_EQ(Perform(OperationCode::ReadPersonality, mac, &setting).status, Unknown);
        EXPECT_EQ(Perform(OperationCode::WritePersonality, mac, &setting).status, Unknown);
    }
}

TEST(DefaultHostPartitions, EveryStateAndTypeOccurs) {
    const Host host = DefaultHost();
    for (const std::uint32_t state : {1U, 2U, 3U}) {
        EXPECT_TRUE(std::any_of(
            host.adapters.begin(), host.adapters.end(),
            [state](const Adapter& adapter) { return adapter.partitionState == state; }))
            << state;
    }
    for (const char* type : {"CNA", "Ethernet"}) {
        EXPECT_TRUE(std::any_of(host.adapters.begin(), host.adapters.end(),
                                [type](const Adapter& adapter) { return adapter.type == type; }))
            << type;
    }
}

}  // namespace
}  // namespace tavrosim
