// The model that is made of a library's answers.
#include "twin/capture/model.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "simulator/host/host_file.h"
#include "simulator/host/told_hardware.h"
#include "tavroapi/codes.h"
#include "unit/twin/capture/answers.h"

namespace tavrohost_test {
namespace {

using tavrolib::Json;
using tavrosim::Host;

tavrohost::CapturedModel ModelOf(const Answers& answers) {
    tavrohost::CapturedModel model = tavrohost::ModelFrom(tavrohost::Told(answers.All()));
    tavrosim::CheckHost(model.host);
    return model;
}

const tavrosim::Function& FirstFunction(const Host& host) {
    return host.adapters.at(0).ports.at(0).functions.at(0);
}

// A list with one record of texts.
Json ListOf(const std::vector<std::string>& texts) {
    return Json::array({Json(texts)});
}

constexpr const char* Mac = "02-00-5E-00-00-01";
constexpr const char* Wwn = "10:00:02:00:5E:00:00:01";

TEST(CapturedModel, OfNothingIsAHostWithoutAdapters) {
    const auto model = ModelOf(Answers());
    EXPECT_TRUE(model.host.adapters.empty());
    EXPECT_TRUE(model.omissions.empty());
}

TEST(CapturedModel, TakesNothingFromRefusals) {
    Answers answers;
    answers.Query("GetHostName", {}, "server-7").Refuse();
    EXPECT_EQ(ModelOf(answers).host.name, "");
}

TEST(CapturedModel, HasOneFunctionForEachAddress) {
    Answers answers;
    answers.Port({{Mac, "02:00:5e:00:00:01", 3, 0, "eth7"}});
    const Host host = ModelOf(answers).host;
    EXPECT_EQ(host.adapters[0].name, "Adapter 4610K");
    EXPECT_EQ(host.adapters[0].number, 2U);
    EXPECT_EQ(FirstFunction(host).mac, "02:00:5e:00:00:01");
    EXPECT_EQ(FirstFunction(host).number, 3U);
    EXPECT_EQ(FirstFunction(host).ethernet.value().interfaceName, "eth7");
}

TEST(CapturedModel, OmitsFunctionsThatCannotBeAddressed) {
    Answers answers;
    answers.Port({{"port a", "port a", 0, 0, ""},
                  {Mac, Mac, 1, 2, ""},
                  {"02:00:5e:00:00:01", Mac, 2, 2, ""},
                  {Mac, Mac, 3, 0, ""},
                  {Mac, Mac, 4, 1, Wwn}});
    const auto model = ModelOf(answers);
    const auto& functions = model.host.adapters[0].ports[0].functions;
    ASSERT_EQ(functions.size(), 2U);  // of two kinds, with one MAC
    EXPECT_TRUE(functions[0].iscsi.has_value());
    EXPECT_TRUE(functions[1].ethernet.has_value());
    EXPECT_EQ(model.omissions.size(), 3U);
    EXPECT_NE(model.omissions[0].find("\"port a\""), std::string::npos);
}

TEST(CapturedModel, TellsOmissionsWithoutControlCharacters) {
    Answers answers;
    answers.Port({{"a\x1B[2Jb\nc", "", 0, 0, ""}});
    const auto model = ModelOf(answers);
    EXPECT_NE(model.omissions.at(0).find("\"a?[2Jb?c\""), std::string::npos);
}

TEST(CapturedModel, DerivesTheMacOfAnFcoeFunctionThatShowsNone) {
    Answers answers;
    answers.Port({{Wwn, "no MAC", 4, 1, "20:00:02:00:5E:00:00:01"}});
    const Host host = ModelOf(answers).host;
    const auto& function = FirstFunction(host);
    EXPECT_EQ(function.mac, "02005e000001");
    EXPECT_EQ(function.fcoe.value().portWwn, Wwn);
    EXPECT_EQ(function.fcoe->nodeWwn, "20:00:02:00:5E:00:00:01");
}

TEST(CapturedModel, TakesPartitionsByNameOrCode) {
    Answers answers;
    answers.Port({{Mac, Mac, 0, 0, "eth0"}});
    answers.Query("GetPartitionState", Mac, 3);
    Json config =
        Json::array({"", "2", "", "", "", "", "3", "Auto", "own word", "4", "", "", "", ""});
    for (const char* const personality : {"9", "iSCSI", "odd", "5", "3", "FCoE", "Ethernet", ""}) {
        config.push_back(Json::array({"", personality, "10", "90", "", "", "", "", "", ""}));
    }
    answers.Operation(58, Mac, config);
    const Host host = ModelOf(answers).host;
    const auto& adapter = host.adapters[0];
    EXPECT_EQ(adapter.partitionState, tavroapi::Partitioned);
    ASSERT_TRUE(adapter.partitions.has_value());
    EXPECT_EQ(adapter.partitions->mode, "MF");
    EXPECT_EQ(adapter.partitions->completionCode, tavroapi::AppliedAtRestart);
    EXPECT_EQ(adapter.partitions->flowControl,
              (std::array<std::string, 4>{"Tx/Rx Enabled", "Auto", "own word", "Disabled"}));
    std::vector<std::string> personalities;
    for (const auto& function : adapter.partitions->functions) {
        personalities.push_back(function.personality);
    }
    EXPECT_EQ(personalities,
              (std::vector<std::string>{"FCoE", "iSCSI", "Ethernet", "iSCSI", "Ethernet", "FCoE",
                                        "Ethernet", "Ethernet"}));
}

TEST(CapturedModel, TakesThePersonalityOfAPortFromItsFunctionsWhereNoneIsTold) {
    Answers answers;
    answers.Port({{Wwn, Mac, 4, 1, ""}});
    const Host host = ModelOf(answers).host;
    const auto& port = host.adapters[0].ports[0];
    EXPECT_EQ(port.resources.value().personality, "FCoE");
    EXPECT_EQ(port.resources->completionCode, tavroapi::AppliedAtRestart);
}

TEST(CapturedModel, KnowsTargetsWhereTheyAreReached) {
    Answers answers;
    answers.Port({{Mac, Mac, 2, 2, "iqn.2015-01.com.example:a"}});
    const Json portal = Json::array({"192.0.2.1", "3260"});
    answers.Operation(6, Mac, Json::array({portal, portal}));
    answers.Operation(
        7, Mac,
        ListOf({"iqn.b", "Alias", "Not connected", "192.0.2.1", "3260", "SendTargets", "7"}));
    answers.Operation(8, Mac,
                      ListOf({"iqn.c", "", "Connected", "192.0.2.9", "3261", "Static", "1"}));
    Json luns = ListOf({"4", "Vendor", "Product", "1 TB", "512", "S1", ""});
    luns.push_back(Json::array({"no number", "", "", "", "", "", ""}));
    answers.Operation(14, Mac, luns, "iqn.b");
    const Host host = ModelOf(answers).host;
    const auto& storage = FirstFunction(host).iscsi.value().storage;
    EXPECT_EQ(storage.portals.size(), 1U);
    ASSERT_EQ(storage.targets.size(), 2U);
    EXPECT_EQ(storage.targets[0].discovery, "SendTargets");
    ASSERT_EQ(host.iscsiTargets.size(), 2U);
    EXPECT_EQ(host.iscsiTargets[0].portals[0].address, "192.0.2.1");
    EXPECT_EQ(host.iscsiTargets[0].portalGroup, "7");
    EXPECT_EQ(host.iscsiTargets[0].alias, "Alias");
    ASSERT_EQ(host.iscsiTargets[0].luns.size(), 1U);
    EXPECT_EQ(host.iscsiTargets[0].luns[0].number, 4U);
    // The active target has a session, though nobody could read it.
    ASSERT_EQ(storage.sessions.size(), 1U);
    EXPECT_EQ(storage.sessions[0].target, "iqn.c");
    EXPECT_EQ(storage.sessions[0].id, 1U);
    EXPECT_EQ(storage.sessions[0].portal.port, "3261");
}

TEST(CapturedModel, NamesInitiatorsOfTargetsThatNotAllPortsSee) {
    constexpr const char* Other = "10:00:02:00:5E:00:00:02";
    constexpr const char* Common = "21:00:00:00:00:00:00:01";
    constexpr const char* Hidden = "21:00:00:00:00:00:00:02";
    const auto target = [](const char* wwn) {
        return Json::array({"", "010203", wwn, wwn, "", "", "", "", "", "0", "0"});
    };
    Answers answers;
    answers.Port({{Wwn, Mac, 4, 1, ""}, {Other, "02-00-5E-00-00-02", 5, 1, ""}});
    answers.Operation(35, Wwn, Json::array({target(Common)}));
    answers.Operation(35, Other, Json::array({target(Hidden), target(Common), target("none")}));
    const Host host = ModelOf(answers).host;
    const auto& fabric = host.fcoeFabric;
    ASSERT_EQ(fabric.targets.size(), 2U);
    EXPECT_EQ(fabric.targets[0].portWwn, Common);
    EXPECT_TRUE(fabric.targets[0].initiators.empty());
    EXPECT_EQ(fabric.targets[1].initiators, std::vector<std::string>{Other});
}

TEST(CapturedModel, StatesCommonHardwareOnce) {
    Answers answers;
    answers.Port({{Mac, Mac, 0, 0, "eth0"}, {"02-00-5E-00-00-02", "02-00-5E-00-00-02", 2, 2, ""}});
    Json ethernet = Json::array();
    for (int i = 0; i < 33; ++i) {
        ethernet.push_back("");
    }
    ethernet[1] = "S-1";
    ethernet[9] = "Down";
    ethernet[13] = "net-driver";
    ethernet[16] = "1.2";
    answers.Operation(62, Mac, ethernet);
    answers.Operation(2, "02-00-5E-00-00-02", Json::array({"2",    "iscsi-driver",
                                                           "9.9",  "",
                                                           "",     "S-1",
                                                           "Down", "None",
                                                           "",     "",
                                                           "",     "",
                                                           "",     "",
                                                           "",     "",
                                                           "",     "",
                                                           "",     "",
                                                           "0",    "1.3"}));
    const Host host = ModelOf(answers).host;
    const auto& adapter = host.adapters[0];
    EXPECT_EQ(adapter.card.value().serialNumber, "S-1");
    EXPECT_EQ(adapter.card->firmwareVersion, "1.2");
    EXPECT_EQ(adapter.card->drivers.ethernet, "net-driver");
    EXPECT_EQ(adapter.card->drivers.iscsi, "iscsi-driver");
    EXPECT_EQ(adapter.ports[0].link.value().status, "Down");
    EXPECT_EQ(adapter.ports[0].functions[0].ethernet->hardware, std::nullopt);
    EXPECT_EQ(adapter.ports[0].functions[1].iscsi->hardware.value().firmwareVersion, "1.3");
    EXPECT_EQ(adapter.ports[0].functions[1].iscsi->hardware->serialNumber, std::nullopt);
}

TEST(CapturedModel, HoldsCountersThatFilesCanHold) {
    Answers answers;
    answers.Port({{Mac, Mac, 0, 0, "eth0"}});
    Json counters = Json::array({"18446744073709551615", "7", "many", "18446744073709551616"});
    answers.Operation(65, Mac, counters, 1);
    const Host host = ModelOf(answers).host;
    const auto& told = FirstFunction(host).ethernet.value().statistics.value().counters;
    EXPECT_EQ(told.framesSent, 9223372036854775807U);
    EXPECT_EQ(told.framesReceived, 7U);
    EXPECT_EQ(told.receiveErrors, 0U);
    EXPECT_EQ(told.transmitErrors, 0U);
    EXPECT_NO_THROW(tavrosim::HostFromText(tavrosim::TextFromHost(host)));
}

TEST(CapturedModel, TakesTheInitiatorAndIsnsServers) {
    Answers answers;
    answers.Port({{Mac, Mac, 2, 2, ""}});
    answers.Operation(25, Mac, Json::array({"192.0.2.3", "192.0.2.4"}));
    const Json login = Json::array({"No", "CRC32C", "", "", "chap", "", "", ""});
    answers.Operation(30, "", Json::array({"iqn.a", login}));
    const Host host = ModelOf(answers).host;
    EXPECT_EQ(host.isnsServers, (std::vector<std::string>{"192.0.2.3", "192.0.2.4"}));
    EXPECT_EQ(host.initiator.name, "iqn.a");
    EXPECT_EQ(host.initiator.login.headerDigest, "CRC32C");
    EXPECT_EQ(host.initiator.login.targetChapName, "chap");
}

}  // namespace
}  // namespace tavrohost_test
