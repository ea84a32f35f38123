#include "simulator/host/hardware.h"

#include <gtest/gtest.h>

#include <array>
#include <nlohmann/json.hpp>

#include "library/json/json.h"
#include "library/json/place.h"
#include "simulator/host/host_file.h"
#include "simulator/host/told_hardware.h"

namespace tavrosim {
namespace {

using tavrolib::Json;
using tavrolib::ShapeError;

// What a host file states of its one adapter: members of the adapter and its port, then those of
// its Ethernet, iSCSI and FCoE function.
struct Stated {
    std::string adapter{};
    std::string port{};
    std::string ethernet{};
    std::string iscsi{};
    std::string fcoe{};
};

std::string HostTextWith(const Stated& stated) {
    return R"({"name": "h", "adapters": [{"name": "A", "number": 4, "type": "CNA", "partitionState": 1)" +
           stated.adapter + R"(, "ports": [{"name": "Port 1")" + stated.port +
           R"(, "functions": [)"
           R"({"number": 0, "mac": "02-00-5E-00-00-01", "ethernet": {"interface": "e")" +
           stated.ethernet +
           R"(}}, {"number": 1, "mac": "02-00-5E-00-00-02", "iscsi": {"tcpIp": {})" + stated.iscsi +
           R"(}}, {"number": 2, "mac": "02-00-5E-00-00-03", "fcoe": )"
           R"({"portWwn": "10:00:02:00:5E:00:00:03", "nodeWwn": "20:00:02:00:5E:00:00:03")" +
           stated.fcoe + "}}]}]}]}";
}

class Hardware : public testing::Test {
  protected:
    void Read(const Stated& stated) { host = HostFromText(HostTextWith(stated)); }

    const Adapter& TheAdapter() const { return host.adapters.at(0); }
    const Port& ThePort() const { return TheAdapter().ports.at(0); }
    const Function& At(std::size_t function) const { return ThePort().functions.at(function); }

    // A text as each of the three functions tells it.
    using Texts = std::array<std::string, 3>;
    Texts Told(std::string ToldHardware::*text) const {
        Texts texts;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            texts[i] = HardwareOf(TheAdapter(), ThePort(), At(i)).*text;
        }
        return texts;
    }

    static Texts All(const std::string& text) { return {text, text, text}; }

    Host host;
};

TEST_F(Hardware, WithoutAnyStatementEveryFunctionTellsTheSame) {
    Read({});
    EXPECT_EQ(Told(&ToldHardware::serialNumber), All("TV10000005"));
    EXPECT_EQ(Told(&ToldHardware::partNumber), All("TV-10G"));
    EXPECT_EQ(Told(&ToldHardware::hardwareRevision), All("B0"));
    EXPECT_EQ(Told(&ToldHardware::firmwareVersion), All("5.2.3.0"));
    EXPECT_EQ(Told(&ToldHardware::bootCodeVersion), All("5.2.3"));
    EXPECT_EQ(Told(&ToldHardware::optionRomVersion), All("5.2.1.0"));
    EXPECT_EQ(Told(&ToldHardware::driver), (Texts{"tavronet", "tavroi", "tavrof"}));
    EXPECT_EQ(Told(&ToldHardware::driverVersion), All("5.2.3.1"));
    EXPECT_EQ(Told(&ToldHardware::linkStatus), All("Up"));
    EXPECT_EQ(Told(&ToldHardware::linkSpeed), All("10 Gbps"));
    EXPECT_EQ(Told(&ToldHardware::maximumSpeed), All("10 Gbps"));
}

TEST_F(Hardware, CardAndLinkTellForAllFunctions) {
    Read({.adapter = R"(, "card": {"serialNumber": "S", "firmwareVersion": "F",)"
                     R"("drivers": {"iscsi": "i", "version": "V"}})",
          .port = R"(, "link": {"status": "Down", "maximumSpeed": "25 Gbps"})"});
    EXPECT_EQ(Told(&ToldHardware::serialNumber), All("S"));
    EXPECT_EQ(Told(&ToldHardware::firmwareVersion), All("F"));
    EXPECT_EQ(Told(&ToldHardware::driver), (Texts{"tavronet", "i", "tavrof"}));
    EXPECT_EQ(Told(&ToldHardware::driverVersion), All("V"));
    EXPECT_EQ(Told(&ToldHardware::linkStatus), All("Down"));
    EXPECT_EQ(Told(&ToldHardware::linkSpeed), All("None"));
    EXPECT_EQ(Told(&ToldHardware::maximumSpeed), All("25 Gbps"));
}

TEST_F(Hardware, TheSpeedThatAnEthernetFunctionChoosesIsThatOfTheLink) {
    Read({.ethernet = R"(, "settings": {"speed": "1 Gbps"})"});
    EXPECT_EQ(Told(&ToldHardware::linkSpeed), All("1 Gbps"));
    EXPECT_EQ(Told(&ToldHardware::maximumSpeed), All("10 Gbps"));
    Read({.ethernet = R"(, "settings": {"speed": "NA"})"});
    EXPECT_EQ(Told(&ToldHardware::linkSpeed), All("10 Gbps"));
}

TEST_F(Hardware, AFunctionMayDifferFromItsCardAndPort) {
    Read({.adapter = R"(, "card": {"firmwareVersion": "F"})",
          .iscsi = R"(, "hardware": {"driver": "bnx2i", "firmwareVersion": "5.2.3.0",)"
                   R"("serialNumber": "", "linkStatus": "Down"})"});
    EXPECT_EQ(Told(&ToldHardware::driver), (Texts{"tavronet", "bnx2i", "tavrof"}));
    EXPECT_EQ(Told(&ToldHardware::firmwareVersion), (Texts{"F", "5.2.3.0", "F"}));
    EXPECT_EQ(Told(&ToldHardware::serialNumber), All("TV10000005"));
    EXPECT_EQ(Told(&ToldHardware::linkStatus), (Texts{"Up", "Down", "Up"}));
}

TEST_F(Hardware, ACardThatIsNotStatedIsWhatItsFunctionsState) {
    Read({.iscsi = R"(, "hardware": {"serialNumber": "S", "firmwareVersion": "F"})",
          .fcoe = R"(, "hardware": {"serialNumber": "S", "firmwareVersion": "G",)"
                  R"("linkStatus": "Down"})"});
    EXPECT_EQ(Told(&ToldHardware::serialNumber), All("S"));
    EXPECT_EQ(Told(&ToldHardware::firmwareVersion), (Texts{"F", "F", "G"}));
    EXPECT_EQ(Told(&ToldHardware::linkStatus), All("Down"));
    EXPECT_FALSE(At(1).iscsi->hardware);
    FunctionHardware own;
    own.firmwareVersion = "G";
    EXPECT_EQ(At(2).fcoe->hardware, own);
}

// "Up" is what earlier versions wrote unasked. It is a statement all the same.
TEST_F(Hardware, ALinkIsUpWhenAnyFunctionSaysSo) {
    const std::string up = R"("linkStatus": "Up"})";
    const std::string down = R"("linkStatus": "Down"})";
    Read({.ethernet = R"(, "port": {)" + up, .fcoe = R"(, "hardware": {)" + down});
    EXPECT_EQ(Told(&ToldHardware::linkStatus), (Texts{"Up", "Up", "Down"}));
    EXPECT_FALSE(At(0).ethernet->hardware);
    Read({.ethernet = R"(, "port": {)" + down, .fcoe = R"(, "hardware": {)" + up});
    EXPECT_EQ(Told(&ToldHardware::linkStatus), (Texts{"Down", "Up", "Up"}));
    EXPECT_FALSE(At(2).fcoe->hardware);
    Read({.ethernet = R"(, "port": {)" + down, .iscsi = R"(, "hardware": {)" + down});
    EXPECT_EQ(Told(&ToldHardware::linkStatus), All("Down"));
    Read({.port = R"(, "link": {"status": "Down"})", .iscsi = R"(, "hardware": {)" + up});
    EXPECT_EQ(Told(&ToldHardware::linkStatus), (Texts{"Down", "Up", "Down"}));
}

// As earlier versions wrote it, with the defaults that they had for each kind of function.
const Stated FormerFile{
    .ethernet =
        R"(, "port": {"linkStatus": "Up", "maximumSpeed": "10 Gbps", "serialNumber": "",)"
        R"("partNumber": "TV-10G", "hardwareRevision": "1", "driverName": "tavronet",)"
        R"("driverVersion": "5.2.3.1", "firmwareVersion": "5.2.0.9", "bootCodeVersion": "5.1.4",)"
        R"("optionRomVersion": "5.1.0", "pciLocation": ""})",
    .iscsi = R"(, "hardware": {"driver": "tavroi", "driverVersion": "5.2.3.1",)"
             R"("firmwareVersion": "5.2.3.0", "serialNumber": "", "linkState": "Up",)"
             R"("linkSpeed": "10 Gbit/s"})",
    .fcoe = R"(, "hardware": {"driver": "lpfc", "driverVersion": "5.2.3.1",)"
            R"("firmwareVersion": "5.2.3.0", "optionRomVersion": "5.2.1.0",)"
            R"("hardwareVersion": "B0", "serialNumber": "S", "linkState": "Up",)"
            R"("linkSpeed": "10 Gbit/s", "deviceName": "f0"}, "boot": {"codeVersion": "5.2.3"})"};

TEST_F(Hardware, WhatEarlierVersionsWroteUnaskedIsNotStated) {
    Read(FormerFile);
    EXPECT_EQ(Told(&ToldHardware::serialNumber), All("S"));
    EXPECT_EQ(Told(&ToldHardware::hardwareRevision), All("B0"));
    EXPECT_EQ(Told(&ToldHardware::firmwareVersion), All("5.2.3.0"));
    EXPECT_EQ(Told(&ToldHardware::bootCodeVersion), All("5.2.3"));
    EXPECT_EQ(Told(&ToldHardware::optionRomVersion), All("5.2.1.0"));
    EXPECT_EQ(Told(&ToldHardware::driver), (Texts{"tavronet", "tavroi", "lpfc"}));
    EXPECT_EQ(Told(&ToldHardware::linkSpeed), All("10 Gbps"));
    EXPECT_FALSE(At(0).ethernet->hardware);
    FunctionHardware own;
    own.driver = "lpfc";
    own.deviceName = "f0";
    EXPECT_EQ(At(2).fcoe->hardware, own);
}

TEST_F(Hardware, AFileOfAnEarlierVersionIsWrittenAnewInTheNewWay) {
    Read(FormerFile);
    const std::string text = TextFromHost(host);
    const Json adapter = Json::parse(text)["adapters"][0];
    EXPECT_EQ(adapter["card"]["serialNumber"], "S");
    EXPECT_EQ(adapter["ports"][0]["link"],
              Json::parse(R"({"status": "Up", "maximumSpeed": "10 Gbps"})"));
    const Json& functions = adapter["ports"][0]["functions"];
    EXPECT_FALSE(functions[0]["ethernet"].contains("port"));
    EXPECT_EQ(functions[2]["fcoe"]["hardware"],
              Json::parse(R"({"driver": "lpfc", "deviceName": "f0"})"));
    EXPECT_FALSE(functions[2]["fcoe"]["boot"].contains("codeVersion"));
    EXPECT_EQ(TextFromHost(HostFromText(text)), text);
}

TEST_F(Hardware, FormerNamesAndUnitsAreUnderstood) {
    Read({.port = R"(, "link": {"maximumSpeed": "100 Mbit/s"})",
          .ethernet = R"(, "port": {"driverName": "d", "pciLocation": "p"})",
          .iscsi = R"(, "hardware": {"linkState": "Down", "linkSpeed": "8 Gbit/s"})",
          .fcoe = R"(, "hardware": {"hardwareVersion": "H"}, "boot": {"codeVersion": "C"})"});
    EXPECT_EQ(Told(&ToldHardware::driver), (Texts{"d", "tavroi", "tavrof"}));
    EXPECT_EQ(Told(&ToldHardware::pciLocation)[0], "p");
    EXPECT_EQ(Told(&ToldHardware::linkStatus), (Texts{"Up", "Down", "Up"}));
    EXPECT_EQ(Told(&ToldHardware::maximumSpeed), (Texts{"100 Mbps", "8 Gbps", "100 Mbps"}));
    EXPECT_EQ(Told(&ToldHardware::hardwareRevision), All("H"));
    EXPECT_EQ(Told(&ToldHardware::bootCodeVersion), All("C"));
}

TEST_F(Hardware, AValueDoesNotStandUnderTwoNames) {
    const auto refusal = [](const Stated& stated) {
        try {
            HostFromText(HostTextWith(stated));
            return std::string("accepted");
        } catch (const ShapeError& error) {
            return std::string(error.what());
        }
    };
    const std::string functions = "adapters[0].ports[0].functions";
    EXPECT_EQ(
        refusal({.iscsi = R"(, "hardware": {"linkStatus": "Up", "linkState": "Down"})"}),
        functions + R"([1].iscsi.hardware.linkState: this is "linkStatus", which is here too)");
    EXPECT_EQ(refusal({.ethernet = R"(, "hardware": {}, "port": {})"}),
              functions + R"([0].ethernet.port: this is "hardware", which is here too)");
}

}  // namespace
}  // namespace tavrosim
