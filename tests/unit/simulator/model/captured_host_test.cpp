// What a captured host tells, before and after changes.
#include <gtest/gtest.h>

#include "simulator/host/restart.h"
#include "tavroapi/boot_records.h"
#include "tavroapi/ethernet_records.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/iscsi_records.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/partition_records.h"
#include "tavroapi/tcpip_records.h"
#include "unit/simulator/captured_host.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::EntryPoint;
using tavrolib::Outcome;
using tavrolib::Status;

using CapturedHostModel = tavrosim_test::CapturedHostTest;

// A captured answer to an operation of a function, without input.
std::string Answered(int operation, const std::string& request, const std::string& output) {
    return R"({"call": "DoOperation", "operation": )" + std::to_string(operation) +
           R"(, "request": ")" + request + R"(", "status": 0, "output": )" + output + "}";
}

std::string AnsweredWithRefusal(int operation, const std::string& request) {
    return R"({"call": "DoOperation", "operation": )" + std::to_string(operation) +
           R"(, "request": ")" + request +
           R"(", "status": 4711, "error": {"code": 4712, "message": "No."}})";
}

// That many texts "odd 0", "odd 1" and so on as a JSON array.
std::string OddTexts(std::size_t count) {
    std::string texts;
    for (std::size_t i = 0; i < count; ++i) {
        texts += (i == 0 ? "\"odd " : ", \"odd ") + std::to_string(i) + '"';
    }
    return '[' + texts + ']';
}

TEST_F(CapturedHostModel, TellsTextsAndNumbersAsCaptured) {
    Play(R"({"call": "GetHostName", "output": "real"},
            {"call": "GetPartitionState", "request": "02-00-5E-10-00-00", "output": 77},
            {"call": "GetAdapterType", "request": "02-00-5E-10-00-00", "output": "?"})");
    EXPECT_EQ(Ask<EntryPoint::GetHostName>(), "real");
    EXPECT_EQ(Ask<EntryPoint::GetPartitionState>(EthernetMac), 77U);
    EXPECT_EQ(Ask<EntryPoint::GetPartitionState>("02:00:5e:10:00:00"), 77U);
    EXPECT_EQ(Ask<EntryPoint::GetAdapterType>(EthernetMac), "?");
    EXPECT_EQ(Ask<EntryPoint::GetAdapterPortNumber>(EthernetMac), 1U);
    host.name = "renamed";
    host.adapters[0].partitionState = 3;
    EXPECT_EQ(Ask<EntryPoint::GetHostName>(), "renamed");
    EXPECT_EQ(Ask<EntryPoint::GetPartitionState>(EthernetMac), 3U);
}

TEST_F(CapturedHostModel, TellsOfARecordOnlyWhatChangedAsItIsNow) {
    namespace iscsi_port = tavroapi::iscsi_port;
    Play(Answered(2, IscsiMac, OddTexts(22)));
    const auto before = Read<OperationCode::ReadIscsiPort>(IscsiMac);
    for (std::size_t i = 0; i < before.texts.size(); ++i) {
        EXPECT_EQ(before.texts[i], "odd " + std::to_string(i));
    }
    tavroapi::TcpIpSettings settings;
    settings.dhcpEnabled = "No";
    settings.ipAddress = "192.0.2.8";
    EXPECT_TRUE(Perform<OperationCode::SetIscsiTcpIp>(IscsiMac, &settings).IsDone());
    auto expected = before;
    expected.texts[iscsi_port::Address] = "192.0.2.8";
    EXPECT_EQ(Read<OperationCode::ReadIscsiPort>(IscsiMac).texts, expected.texts);
    settings.ipAddress = "192.0.2.7";
    EXPECT_TRUE(Perform<OperationCode::SetIscsiTcpIp>(IscsiMac, &settings).IsDone());
    EXPECT_EQ(Read<OperationCode::ReadIscsiPort>(IscsiMac).texts, before.texts);
}

TEST_F(CapturedHostModel, KeepsOfTheRecordWhatTheAnswerLeavesOut) {
    Play(Answered(2, IscsiMac, R"(["odd"])"));
    tavroapi::IscsiPortRecord record;
    record.texts[21] = "from the caller";
    EXPECT_TRUE(Perform<OperationCode::ReadIscsiPort>(IscsiMac, nullptr, &record).IsDone());
    EXPECT_EQ(record.texts[0], "odd");
    EXPECT_EQ(record.texts[21], "from the caller");
}

TEST_F(CapturedHostModel, TellsNestedRecordsAndArraysByPosition) {
    Play(R"({"call": "DoOperation", "operation": 30, "request": "", "output":
             ["iqn.odd", ["m", "h", "d", "a", "t", "s", "i", "s"]]},)" +
         Answered(43, FcoeWwn, R"(["on", "on", "v", 1, 2, 3, [["x", "y", "z"]]])"));
    host.initiator.login.headerDigest = "CRC32C";
    const auto initiator = Read<OperationCode::ReadInitiator>("");
    EXPECT_EQ(initiator.name, "iqn.odd");
    EXPECT_EQ(initiator.login.multipath, "m");
    EXPECT_EQ(initiator.login.headerDigest, "CRC32C");
    EXPECT_EQ(initiator.login.initiatorSecret, "s");
    auto boot = Read<OperationCode::ReadFcoeBoot>(FcoeWwn);
    EXPECT_EQ(boot.bootState, "on");
    EXPECT_EQ(boot.targets[0].lunItem, "y");
    FcoeBoot& changed = FunctionAt(2).fcoe->boot.emplace();
    changed.linkUpDelay = 44;
    changed.targets[0].lun = "9";
    boot = Read<OperationCode::ReadFcoeBoot>(FcoeWwn);
    EXPECT_EQ(boot.numberA, 1U);
    EXPECT_EQ(boot.numberB, 44U);
    EXPECT_EQ(boot.numberC, 3U);
    EXPECT_EQ(boot.targets[0].target, "x");
    EXPECT_EQ(boot.targets[0].lunItem, "9");
}

TEST_F(CapturedHostModel, TellsAListWithOddAndDoubleElementsAsCapturedUntilItChanges) {
    Play(Answered(25, IscsiMac, R"(["odd", "192.0.2.2", "192.0.2.1", "odd", "192.0.2.1"])"));
    using Servers = std::list<std::string>;
    EXPECT_EQ(Read<OperationCode::ListIsnsServers>(IscsiMac),
              (Servers{"odd", "192.0.2.2", "192.0.2.1", "odd", "192.0.2.1"}));
    char server[] = "192.0.2.3";
    EXPECT_TRUE(Perform<OperationCode::AddIsnsServer>(IscsiMac, server).IsDone());
    EXPECT_EQ(Read<OperationCode::ListIsnsServers>(IscsiMac),
              (Servers{"odd", "192.0.2.1", "odd", "192.0.2.1", "192.0.2.2", "192.0.2.3"}));
}

TEST_F(CapturedHostModel, LosesFromAListWhatWasRemoved) {
    Play(Answered(7, IscsiMac,
                  R"([["odd", "", "", "", "", "", ""], ["t", "", "", "", "", "", ""]])"));
    tavroapi::LogoutRecord logout;
    logout.targetName = "t";
    logout.sessionIds = {"0"};
    EXPECT_TRUE(Perform<OperationCode::LogOutOfTarget>(IscsiMac, &logout).IsDone());
    auto targets = Read<OperationCode::ListTargets>(IscsiMac);
    ASSERT_EQ(targets.size(), 2U);
    EXPECT_EQ(targets.back().name, "t");
    EXPECT_EQ(targets.back().alias, "");
    EXPECT_EQ(targets.back().connectionState, "Not connected");
    char name[] = "t";
    EXPECT_TRUE(Perform<OperationCode::RemoveTarget>(IscsiMac, name).IsDone());
    targets = Read<OperationCode::ListTargets>(IscsiMac);
    ASSERT_EQ(targets.size(), 1U);
    EXPECT_EQ(targets.front().name, "odd");
}

TEST_F(CapturedHostModel, RefusesAsCapturedUntilAChangeTouchesTheAnswer) {
    Play(AnsweredWithRefusal(2, IscsiMac) + "," + AnsweredWithRefusal(25, IscsiMac));
    tavroapi::IscsiPortRecord record;
    record.texts[3] = "from the caller";
    Outcome outcome = Perform<OperationCode::ReadIscsiPort>(IscsiMac, nullptr, &record);
    EXPECT_EQ(outcome.status, 4711U);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->code, 4712U);
    EXPECT_EQ(outcome.error->message, L"No.");
    EXPECT_EQ(outcome.ErrorIn(tavrolib::Language::Japanese)->message, L"No.");
    EXPECT_EQ(record.texts[3], "from the caller");
    host.isnsServers.clear();
    EXPECT_EQ((Perform<OperationCode::ReadIscsiPort>(IscsiMac, nullptr, &record).status), 4711U);
    EXPECT_TRUE(Read<OperationCode::ListIsnsServers>(IscsiMac).empty());
    FunctionAt(1).iscsi->tcpIp.address = "192.0.2.8";
    EXPECT_TRUE(Perform<OperationCode::ReadIscsiPort>(IscsiMac, nullptr, &record).IsDone());
    EXPECT_EQ(record.texts[tavroapi::iscsi_port::Mac], IscsiMac);
}

TEST_F(CapturedHostModel, GivesTheOutputOfARefusal) {
    Play(R"({"call": "GetHostName", "status": 5, "output": "half"})");
    std::string name;
    tavrolib::Call call;
    call.entryPoint = EntryPoint::GetHostName;
    call.output = &name;
    const Outcome outcome = Serve(call);
    EXPECT_EQ(outcome.status, 5U);
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(name, "half");
}

TEST_F(CapturedHostModel, TellsWhatTheModelsRefuseAlikeAsCaptured) {
    char unknown[] = "u";
    Play(R"({"call": "DoOperation", "operation": 10, "request": "02-00-5E-10-00-02", "input": "u",
             "output": ["u", "a", "b", "c", "d", "e", "f"]},
            {"call": "DoOperation", "operation": 2, "request": "02-00-5E-10-00-09",
             "output": ["odd"]})");
    EXPECT_EQ(Read<OperationCode::ReadTarget>(IscsiMac, unknown).portalPort, "d");
    EXPECT_EQ(Read<OperationCode::ReadIscsiPort>("02-00-5E-10-00-09").texts[0], "odd");
    FunctionAt(1).iscsi->storage.targets.push_back({"u", {"192.0.2.30"}, "Static"});
    const auto target = Read<OperationCode::ReadTarget>(IscsiMac, unknown);
    EXPECT_EQ(target.portalAddress, "192.0.2.30");
    EXPECT_EQ(target.portalPort, "3260");
}

TEST_F(CapturedHostModel, RefusesWhatTheModelNowDoesNotKnowAnyMore) {
    Play(Answered(2, IscsiMac, OddTexts(22)));
    host.adapters[0].ports[0].functions.erase(host.adapters[0].ports[0].functions.begin() + 1);
    tavroapi::IscsiPortRecord record;
    EXPECT_EQ((Perform<OperationCode::ReadIscsiPort>(IscsiMac, nullptr, &record).status),
              static_cast<std::uint32_t>(Status::UnknownIdentifier));
    EXPECT_EQ(record.texts[0], "");
}

TEST_F(CapturedHostModel, AnswersFromTheModelWhatWasNotCaptured) {
    Play("");
    EXPECT_EQ(Ask<EntryPoint::GetHostName>(), "made");
    EXPECT_EQ(Read<OperationCode::ListPortals>(IscsiMac).size(), 1U);
    tavroapi::IscsiPortRecord record;
    EXPECT_EQ((Perform<OperationCode::ReadIscsiPort>("02-00-5E-10-00-09", nullptr, &record).status),
              static_cast<std::uint32_t>(Status::UnknownIdentifier));
}

TEST_F(CapturedHostModel, RefusesAnUnknownOperation) {
    Play("");
    tavrolib::Call call;
    call.entryPoint = EntryPoint::DoOperation;
    call.operation = 9;
    EXPECT_FALSE(ChangesHost(host, call));
    EXPECT_EQ(Serve(call).status, static_cast<std::uint32_t>(Status::UnknownOperation));
}

TEST_F(CapturedHostModel, CountersStandStill) {
    Play(Answered(15, IscsiMac, OddTexts(14)));
    tavroapi::StatisticsFlag flag = 1;
    std::uint32_t zero = 0;
    FunctionAt(0).ethernet->statistics.emplace().counters.framesSent = 5;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Read<OperationCode::ReadIscsiStatistics>(IscsiMac).texts[0], "odd 0");
        EXPECT_EQ(Read<OperationCode::ReadFcoeStatistics>(FcoeWwn, &zero)
                      .texts[tavroapi::fcoe_statistics::TransmittedFrames],
                  "10");
        EXPECT_EQ(Read<OperationCode::ReadEthernetStatistics>(EthernetMac, &flag)
                      .texts[tavroapi::ethernet_statistics::FramesSent],
                  "5");
    }
    tavroapi::LogoutRecord logout;
    logout.targetName = "t";
    logout.sessionIds = {"0"};
    EXPECT_TRUE(Perform<OperationCode::LogOutOfTarget>(IscsiMac, &logout).IsDone());
    tavroapi::PlacedTargetLogin placed;
    placed.record.targetName = "t";
    placed.record.portalAddress = "192.0.2.20";
    placed.record.portalPort = "3260";
    EXPECT_TRUE(Perform<OperationCode::LogInToTarget>(IscsiMac, &placed.record).IsDone());
    EXPECT_EQ(FunctionAt(1).iscsi->storage.sessions.size(), 1U);
    EXPECT_EQ(Read<OperationCode::ReadIscsiStatistics>(IscsiMac).texts[8], "odd 8");
    EXPECT_EQ(FunctionAt(1).iscsi->storage.statistics.logins, 3U);
    EXPECT_EQ(FunctionAt(1).iscsi->storage.statistics.logouts, 2U);
}

TEST_F(CapturedHostModel, AResetMakesCountersZero) {
    Play(R"({"call": "DoOperation", "operation": 38, "request": "10:00:02:00:5E:10:00:04",
             "input": 0, "output": ["12", "10", "odd"]})");
    std::uint32_t zero = 0;
    namespace fcoe_statistics = tavroapi::fcoe_statistics;
    auto told = Read<OperationCode::ReadFcoeStatistics>(FcoeWwn, &zero);
    EXPECT_EQ(told.texts[fcoe_statistics::TransmittedFrames], "10");
    EXPECT_EQ(told.texts[fcoe_statistics::TransmittedWords], "odd");
    EXPECT_EQ(Read<OperationCode::ResetFcoeStatistics>(FcoeWwn, &zero)
                  .texts[fcoe_statistics::TransmittedFrames],
              "0");
    for (int i = 0; i < 2; ++i) {
        told = Read<OperationCode::ReadFcoeStatistics>(FcoeWwn, &zero);
        EXPECT_EQ(told.texts[fcoe_statistics::TransmittedFrames], "0");
    }
}

TEST_F(CapturedHostModel, OnlyReadingCountersOfAnOrdinaryHostChangesIt) {
    std::uint32_t zero = 0;
    tavroapi::FcoeStatisticsRecord record;
    const auto reading = CallOf<OperationCode::ReadFcoeStatistics>(FcoeWwn, &zero, &record);
    const auto reset = CallOf<OperationCode::ResetFcoeStatistics>(FcoeWwn, &zero, &record);
    Play("");
    EXPECT_FALSE(ChangesHost(host, reading));
    EXPECT_TRUE(ChangesHost(host, reset));
    host = HostFromText(tavrosim_test::MadeHost);
    EXPECT_TRUE(ChangesHost(host, reading));
    EXPECT_TRUE(Serve(reading).IsDone());
    EXPECT_GT(FunctionAt(2).fcoe->statistics.fipAdvertisements, 0U);
}

TEST_F(CapturedHostModel, WhatWasCapturedOutlivesEveryChange) {
    Play(Answered(2, IscsiMac, OddTexts(22)));
    const auto captured = host.captured;
    const auto asCaptured = host.asCaptured;
    const std::string made = TextFromHost(*asCaptured);
    tavroapi::InitiatorRecord initiator;
    initiator.name = "iqn.example:other";
    EXPECT_TRUE(Perform<OperationCode::SetInitiator>("", &initiator).IsDone());
    Restart(host);
    EXPECT_EQ(host.captured, captured);
    EXPECT_EQ(host.asCaptured, asCaptured);
    EXPECT_EQ(TextFromHost(*asCaptured), made);
    EXPECT_EQ(host.initiator.name, "iqn.example:other");
}

// The settings of an Ethernet function as JSON: all without value and choices, but for one.
std::string SettingsWith(std::size_t number, const std::string& value, const std::string& choices) {
    std::string settings;
    for (std::size_t i = 0; i < 31; ++i) {
        settings += i == 0 ? "[" : ", [";
        settings += i == number ? R"(7, ")" + value + R"(", "t", [)" + choices + R"(], "")"
                                : std::string(R"(0, "odd", "", [], "")");
        settings += ']';
    }
    return '[' + settings + ']';
}

class CapturedSettings : public tavrosim_test::CapturedHostTest {
  protected:
    std::uint32_t StatusOfSetting(std::size_t number, const std::string& value) {
        tavroapi::AdapterSettings record;
        record.settings.at(number).value = value;
        record.settings.at(number).changed = "1";
        return Perform<OperationCode::WriteAdapterSettings>(EthernetMac, &record).status;
    }
};

constexpr auto ValueRefused = static_cast<std::uint32_t>(Status::SettingValueRefused);
constexpr auto Fixed = static_cast<std::uint32_t>(Status::SettingFixed);

TEST_F(CapturedSettings, AListIsTheCapturedOne) {
    Play(Answered(63, EthernetMac, SettingsWith(9, "odd", R"([5, "small"], [9, "large"])")));
    EXPECT_EQ(StatusOfSetting(9, "9014"), ValueRefused);
    EXPECT_EQ(StatusOfSetting(9, "large"), 0U);
    const auto told = Read<OperationCode::ReadAdapterSettings>(EthernetMac);
    EXPECT_EQ(told.settings[9].value, "large");
    EXPECT_EQ(told.settings[9].libraryNumber, 7);
    EXPECT_EQ(told.settings[9].libraryText, "t");
    EXPECT_EQ(told.settings[9].choices,
              (std::map<std::int32_t, std::wstring>{{5, L"small"}, {9, L"large"}}));
    EXPECT_EQ(told.settings[1].value, "odd");
    EXPECT_TRUE(told.settings[1].choices.empty());
}

TEST_F(CapturedSettings, ARangeIsTheCapturedOne) {
    Play(Answered(63, EthernetMac,
                  SettingsWith(10, "9", R"([3, "step"], [6, "min"], [12, "max"])")));
    for (const char* const allowed : {"6", "9", "12"}) {
        EXPECT_EQ(StatusOfSetting(10, allowed), 0U) << allowed;
    }
    for (const char* const refused : {"3", "7", "15", "512", "", "min"}) {
        EXPECT_EQ(StatusOfSetting(10, refused), ValueRefused) << refused;
    }
}

TEST_F(CapturedSettings, ARangeWithoutAStepAllowsNothing) {
    Play(Answered(63, EthernetMac,
                  SettingsWith(10, "9", R"([0, "step"], [-6, "min"], [12, "max"])")));
    EXPECT_EQ(StatusOfSetting(10, "6"), ValueRefused);
}

TEST_F(CapturedSettings, OneWithoutChoicesIsFixedUnlessItIsTheAddress) {
    Play(Answered(63, EthernetMac, SettingsWith(9, "odd", "")));
    EXPECT_EQ(StatusOfSetting(9, "9014"), Fixed);
    EXPECT_EQ(StatusOfSetting(0, "9014"), ValueRefused);
    EXPECT_EQ(StatusOfSetting(0, "02-00-5E-00-00-01"), 0U);
    EXPECT_EQ(Read<OperationCode::ReadAdapterSettings>(EthernetMac).settings[0].value,
              "02-00-5E-00-00-01");
}

TEST_F(CapturedSettings, OneThatTheSimulatedAdapterDoesNotChangeCanBeChanged) {
    Play(Answered(63, EthernetMac, SettingsWith(29, "odd", R"([1, "cold"], [2, "hot"])")));
    EXPECT_EQ(StatusOfSetting(29, "hot"), 0U);
    EXPECT_EQ(Read<OperationCode::ReadAdapterSettings>(EthernetMac).settings[29].value, "hot");
}

TEST_F(CapturedSettings, WithoutAnAnswerTheTableCounts) {
    Play("");
    EXPECT_EQ(StatusOfSetting(9, "9014"), 0U);
    EXPECT_EQ(StatusOfSetting(9, "large"), ValueRefused);
    Play(AnsweredWithRefusal(63, EthernetMac));
    EXPECT_EQ(StatusOfSetting(9, "9014"), 0U);
}

TEST_F(CapturedSettings, AnExportTellsWhatAReadingTells) {
    Play(Answered(63, EthernetMac, SettingsWith(9, "odd", R"([5, "small"])")));
    EXPECT_EQ(StatusOfSetting(9, "small"), 0U);
    const auto told = Read<OperationCode::ExportAdapterSettings>(EthernetMac);
    EXPECT_EQ(told.settings[9].value, "small");
    EXPECT_EQ(told.settings[9].libraryNumber, 7);
    EXPECT_EQ(told.settings[1].value, "odd");
}

}  // namespace
}  // namespace tavrosim
