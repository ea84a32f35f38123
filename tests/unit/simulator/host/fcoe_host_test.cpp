#include <gtest/gtest.h>

#include "library/json/place.h"
#include "simulator/host/host_file.h"

namespace tavrosim {
namespace {

using tavrolib::ShapeError;

// A host of one FCoE function with these members after its WWNs, and a fabric with these.
std::string HostText(const std::string& part, const std::string& fabric) {
    return R"({"name": "h", "adapters": [{"name": "a", "number": 0, "type": "CNA", "partitionState": 1,)"
           R"("ports": [{"name": "Port 1", "functions": [{"number": 0, "mac": "02-00-5E-10-00-04",)"
           R"("fcoe": {"portWwn": "10:00:02:00:5E:10:00:04", "nodeWwn": "20:00:02:00:5E:10:00:04")" +
           part + "}}]}]}], \"fcoeFabric\": {" + fabric + "}}";
}

std::string ReasonOf(const std::string& text) {
    try {
        HostFromText(text);
        return {};
    } catch (const ShapeError& error) {
        return error.what();
    }
}

std::string ReasonOfPart(const std::string& part) {
    const std::string reason = ReasonOf(HostText(part, ""));
    const std::string place = "adapters[0].ports[0].functions[0].fcoe";
    EXPECT_EQ(reason.substr(0, place.size()), place);
    return reason.substr(std::min(place.size(), reason.size()));
}

std::string Target(const std::string& port, const std::string& more = "") {
    return R"({"portWwn": ")" + port +
           R"(", "nodeWwn": "50:00:02:00:5E:40:00:00", "fcid": "0A0100")" + more + "}";
}

const std::string TargetWwn = "50:00:02:00:5E:40:00:01";

TEST(FcoeHost, EverythingButTheWwnsMayBeLeftOut) {
    const Host host = HostFromText(HostText("", ""));
    const FcoePart& part = *host.adapters[0].ports[0].functions[0].fcoe;
    EXPECT_EQ(part.fipVlanId, "1002");
    EXPECT_EQ(part.dcb.state, "Enable");
    EXPECT_TRUE(part.virtualPorts.empty());
    EXPECT_TRUE(host.fcoeFabric.targets.empty());
}

TEST(FcoeHost, WhatIsWrittenIsReadAgain) {
    const std::string text = TextFromHost(HostFromText(HostText(
        R"(, "fcid": "0104FE", "bindings": [{"targetPortWwn": "50:00:02:00:5E:40:00:01", "target": 3}])",
        R"("targets": [)" + Target(TargetWwn, R"(, "luns": [{"number": 7}])") + "]")));
    EXPECT_EQ(TextFromHost(HostFromText(text)), text);
    const Host host = HostFromText(text);
    EXPECT_EQ(host.adapters[0].ports[0].functions[0].fcoe->bindings.at(0).target, 3U);
    EXPECT_EQ(host.fcoeFabric.targets.at(0).luns.at(0).number, 7U);
}

TEST(FcoeHost, IdentifiersThatAreNoneAreNamed) {
    EXPECT_EQ(ReasonOfPart(R"(, "fcid": "10400")"),
              ".fcid: an FCID of 6 hexadecimal digits is wanted");
    EXPECT_EQ(ReasonOfPart(R"(, "fcid": "01040G")"),
              ".fcid: an FCID of 6 hexadecimal digits is wanted");
    EXPECT_EQ(ReasonOfPart(R"(, "bindings": [{"targetPortWwn": "50", "target": 3}])"),
              ".bindings[0].targetPortWwn: a WWN of 16 hexadecimal digits is wanted");
    EXPECT_EQ(ReasonOfPart(R"(, "virtualPorts": [{"portWwn": "20:01:02:00:5E:10:00:04",)"
                           R"("nodeWwn": "x", "fcid": "010401"}])"),
              ".virtualPorts[0].nodeWwn: a WWN of 16 hexadecimal digits is wanted");
    EXPECT_EQ(ReasonOf(HostText("", R"("targets": [)" + Target("x") + "]")),
              "fcoeFabric.targets[0].portWwn: a WWN of 16 hexadecimal digits is wanted");
    EXPECT_EQ(ReasonOf(HostText(
                  "", R"("targets": [)" + Target(TargetWwn, R"(, "initiators": ["x"])") + "]")),
              "fcoeFabric.targets[0].initiators[0]: a WWN of 16 hexadecimal digits is wanted");
}

TEST(FcoeHost, NoTwoPortsHaveOneWwn) {
    const std::string taken = R"(, "virtualPorts": [{"portWwn": "10-00-02-00-5e-10-00-04",)"
                              R"("nodeWwn": "20:00:02:00:5E:10:00:04", "fcid": "010401"}])";
    EXPECT_EQ(ReasonOfPart(taken), ".virtualPorts[0].portWwn: another port has this WWN");
    EXPECT_EQ(ReasonOf(HostText(
                  "", R"("targets": [)" + Target(TargetWwn) + "," + Target(TargetWwn) + "]")),
              "fcoeFabric.targets[1].portWwn: another target has this WWN");
}

TEST(FcoeHost, NoMoreRepliesAreLostThanThereAre) {
    EXPECT_EQ(ReasonOf(HostText(
                  "", R"("targets": [)" + Target(TargetWwn, R"(, "lossPercent": 100)") + "]")),
              "");
    EXPECT_EQ(ReasonOf(HostText(
                  "", R"("targets": [)" + Target(TargetWwn, R"(, "lossPercent": 101)") + "]")),
              "fcoeFabric.targets[0].lossPercent: at most 100 is wanted");
}

}  // namespace
}  // namespace tavrosim
