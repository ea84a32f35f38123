#include <gtest/gtest.h>

#include <string>

#include "library/json/place.h"
#include "simulator/host/host_file.h"
#include "simulator/model/model.h"
#include "tavroapi/boot_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoeBootConfig;
using tavroapi::IscsiBootConfig;
using tavroapi::OperationCode;
using tavrolib::Outcome;
using tavrolib::ShapeError;

namespace position = tavroapi::iscsi_boot;

constexpr const char* Mac = "02-00-5E-10-00-02";
constexpr const char* Wwn = "10:00:02:00:5E:10:00:04";

constexpr const char* HostText = R"({
  "name": "h",
  "adapters": [{"name": "A", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
    {"name": "Port 1", "functions": [
      {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
      {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {}},
      {"number": 6, "mac": "02-00-5E-10-00-06", "iscsi": {"boot": {
         "address": "192.0.2.6", "chapName": "user", "chapSecret": "secret",
         "secondTarget": {"used": "Enabled", "name": "second", "chapSecret": "other secret"}}}},
      {"number": 4, "mac": "02-00-5E-10-00-04",
       "fcoe": {"portWwn": "10:00:02:00:5E:10:00:04", "nodeWwn": "20:00:02:00:5E:10:00:04"}},
      {"number": 5, "mac": "02-00-5E-10-00-05",
       "fcoe": {"portWwn": "10:00:02:00:5E:10:00:05", "nodeWwn": "20:00:02:00:5E:10:00:05", "boot": {
         "state": "One Time Disabled", "codeVersion": "9.9", "busyRetries": 1, "linkUpDelay": 2, "loginRetries": 3,
         "targets": [{"target": "t", "lun": "l", "state": "Enabled"}]}}}]}]}]
})";

class BootModel : public testing::Test {
  protected:
    Outcome Read(OperationCode code, const char* request, void* output) {
        return FindModel(static_cast<std::uint32_t>(code))->read(host, request, nullptr, output);
    }

    // Changes the host only when the model is done, as the store does.
    Outcome Write(OperationCode code, const char* request, void* input) {
        Host copy = host;
        Outcome outcome =
            FindModel(static_cast<std::uint32_t>(code))->change(copy, request, input, nullptr);
        if (outcome.IsDone()) {
            // What is kept survives the host file.
            host = HostFromText(TextFromHost(copy));
        }
        return outcome;
    }

    IscsiBootConfig ReadIscsi(const char* mac = Mac) {
        IscsiBootConfig config;
        EXPECT_TRUE(Read(OperationCode::ReadIscsiBoot, mac, &config).IsDone());
        return config;
    }

    FcoeBootConfig ReadFcoe(const char* wwn = Wwn) {
        FcoeBootConfig config;
        EXPECT_TRUE(Read(OperationCode::ReadFcoeBoot, wwn, &config).IsDone());
        return config;
    }

    Host host = HostFromText(HostText);
};

IscsiBootConfig SampleIscsi() {
    IscsiBootConfig config;
    for (std::size_t i = 0; i < config.texts.size(); ++i) {
        config.texts[i] = "T" + std::to_string(i);
    }
    for (const std::size_t at : {0U, 2U, 14U, 21U, 28U, 30U, 31U}) {
        config.texts[at] = "Enabled";
    }
    return config;
}

TEST_F(BootModel, AnIscsiPortStartsWithDefaults) {
    const IscsiBootConfig config = ReadIscsi();
    EXPECT_EQ(config.texts[position::TcpIpByDhcp], "Enabled");
    EXPECT_EQ(config.texts[position::LinkUpDelay], "0");
    EXPECT_EQ(config.texts[position::FirstTarget + position::TargetUsed], "Disabled");
    EXPECT_EQ(config.texts[position::FirstTarget + position::TargetPort], "3260");
    EXPECT_EQ(config.texts[position::AddressBinding], "Disabled");
}

TEST_F(BootModel, IscsiSettingsAreKeptAndSecretsNotTold) {
    IscsiBootConfig config = SampleIscsi();
    ASSERT_TRUE(Write(OperationCode::WriteIscsiBoot, Mac, &config).IsDone());
    const IscsiBootConfig now = ReadIscsi();
    for (std::size_t i = 0; i < config.texts.size(); ++i) {
        const bool isKept = i != 1 && i != 3 && i != 5 && i != 7 && i != 13 && i != 20 && i != 27;
        EXPECT_EQ(now.texts[i], isKept ? config.texts[i] : "") << i;
    }
    const std::string file = TextFromHost(host);
    for (const char* secret : {"T13", "T20", "T27"}) {
        EXPECT_NE(file.find(secret), std::string::npos) << secret;
    }
}

TEST_F(BootModel, EachPortHasItsOwnSettings) {
    const IscsiBootConfig before = ReadIscsi("02-00-5E-10-00-06");
    EXPECT_EQ(before.texts[position::IpAddress], "192.0.2.6");
    EXPECT_EQ(before.texts[position::ChapName], "user");
    EXPECT_EQ(before.texts[position::ChapSecret], "");
    EXPECT_EQ(before.texts[position::SecondTarget + position::TargetName], "second");
    IscsiBootConfig config = SampleIscsi();
    ASSERT_TRUE(Write(OperationCode::WriteIscsiBoot, Mac, &config).IsDone());
    EXPECT_EQ(ReadIscsi("02-00-5E-10-00-06").texts, before.texts);
}

TEST_F(BootModel, IscsiSwitchesHaveTwoWords) {
    for (const std::size_t at : {0U, 2U, 14U, 21U, 28U, 30U, 31U}) {
        IscsiBootConfig config = SampleIscsi();
        config.texts[at] = "enabled";
        const Outcome outcome = Write(OperationCode::WriteIscsiBoot, Mac, &config);
        EXPECT_EQ(outcome.status, 37633U) << at;
        EXPECT_NE(outcome.error->details.find(L"Text " + std::to_wstring(at) + L" "),
                  std::wstring::npos);
    }
    EXPECT_EQ(ReadIscsi().texts[position::BootFromTarget], "Disabled");
}

TEST_F(BootModel, ATargetThatIsUsedNeedsANameUnlessDhcpTellsIt) {
    IscsiBootConfig config = SampleIscsi();
    config.texts[18].clear();
    config.texts[25].clear();
    EXPECT_TRUE(Write(OperationCode::WriteIscsiBoot, Mac, &config).IsDone());
    config.texts[2] = "Disabled";
    EXPECT_EQ(Write(OperationCode::WriteIscsiBoot, Mac, &config).error->message,
              L"The first boot target has no name.");
    config.texts[18] = "first";
    EXPECT_EQ(Write(OperationCode::WriteIscsiBoot, Mac, &config).error->message,
              L"The second boot target has no name.");
    config.texts[21] = "Disabled";
    EXPECT_TRUE(Write(OperationCode::WriteIscsiBoot, Mac, &config).IsDone());
}

TEST_F(BootModel, FcoeSettingsAreKept) {
    FcoeBootConfig config = ReadFcoe();
    EXPECT_EQ(config.bootState, "Disabled");
    EXPECT_EQ(config.secondSwitch, "Disabled");
    EXPECT_EQ(config.targets[0].target, "");
    const std::string version = config.bootCodeVersion;
    config = {.bootState = "Enabled",
              .secondSwitch = "Enabled",
              .bootCodeVersion = "another version",
              .numberA = 255,
              .numberB = 60,
              .numberC = 8,
              .targets = {}};
    for (std::size_t i = 0; i < config.targets.size(); ++i) {
        const std::string number = std::to_string(i);
        config.targets[i] = {"target " + number, "lun " + number, "state " + number};
    }
    ASSERT_TRUE(Write(OperationCode::WriteFcoeBoot, Wwn, &config).IsDone());
    const FcoeBootConfig now = ReadFcoe();
    EXPECT_EQ(now.bootState, "Enabled");
    EXPECT_EQ(now.secondSwitch, "Enabled");
    EXPECT_EQ(now.bootCodeVersion, version);
    EXPECT_EQ(now.numberA, 255U);
    EXPECT_EQ(now.numberB, 60U);
    EXPECT_EQ(now.numberC, 8U);
    EXPECT_EQ(now.targets[7].target, "target 7");
    EXPECT_EQ(now.targets[7].lunItem, "lun 7");
    EXPECT_EQ(now.targets[7].state, "state 7");
}

TEST_F(BootModel, FcoeSettingsComeFromTheHostFile) {
    const FcoeBootConfig config = ReadFcoe("10:00:02:00:5E:10:00:05");
    EXPECT_EQ(config.bootState, "One Time Disabled");
    EXPECT_EQ(config.bootCodeVersion, "9.9");
    EXPECT_EQ(config.numberA, 1U);
    EXPECT_EQ(config.numberB, 2U);
    EXPECT_EQ(config.numberC, 3U);
    EXPECT_EQ(config.targets[0].target, "t");
    EXPECT_EQ(config.targets[0].lunItem, "l");
    EXPECT_EQ(config.targets[0].state, "Enabled");
    EXPECT_EQ(config.targets[1].target, "");
}

TEST_F(BootModel, FcoeValuesOutsideTheirRangeAreRefused) {
    const FcoeBootConfig good = ReadFcoe();
    const auto refuse = [&](auto spoil) {
        FcoeBootConfig config = good;
        spoil(config);
        EXPECT_EQ(Write(OperationCode::WriteFcoeBoot, Wwn, &config).status, 37633U);
    };
    refuse([](FcoeBootConfig& config) { config.bootState = "On"; });
    refuse([](FcoeBootConfig& config) { config.secondSwitch = "One Time Disabled"; });
    refuse([](FcoeBootConfig& config) { config.numberA = 256; });
    refuse([](FcoeBootConfig& config) { config.numberB = 61; });
    refuse([](FcoeBootConfig& config) { config.numberC = 9; });
}

TEST_F(BootModel, OnlyFunctionsOfTheKindCanBoot) {
    constexpr std::uint32_t Unknown = 36871;
    IscsiBootConfig iscsi = SampleIscsi();
    FcoeBootConfig fcoe = ReadFcoe();
    for (const char* request :
         {"02-00-5E-10-00-00", "02-00-5E-10-00-04", "02-00-5E-99-99-99", ""}) {
        EXPECT_EQ(Read(OperationCode::ReadIscsiBoot, request, &iscsi).status, Unknown) << request;
        EXPECT_EQ(Write(OperationCode::WriteIscsiBoot, request, &iscsi).status, Unknown) << request;
    }
    for (const char* request :
         {"02-00-5E-10-00-04", "02-00-5E-10-00-02", "10:00:02:00:5E:99:99:99"}) {
        EXPECT_EQ(Read(OperationCode::ReadFcoeBoot, request, &fcoe).status, Unknown) << request;
        EXPECT_EQ(Write(OperationCode::WriteFcoeBoot, request, &fcoe).status, Unknown) << request;
    }
}

TEST_F(BootModel, AHostFileHasAtMostEightBootTargets) {
    std::string text = HostText;
    const std::string one = R"({"target": "t", "lun": "l", "state": "Enabled"})";
    std::string nine = one;
    for (int i = 1; i < 9; ++i) {
        nine += ", " + one;
    }
    text.replace(text.find(one), one.size(), nine);
    try {
        HostFromText(text);
        FAIL() << "nine targets were taken";
    } catch (const ShapeError& error) {
        EXPECT_NE(std::string(error.what()).find("functions[4].fcoe.boot.targets"),
                  std::string::npos)
            << error.what();
    }
}

}  // namespace
}  // namespace tavrosim
