#include "twin/check/check.h"

#include <gtest/gtest.h>

#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "simulator/host/default_host.h"
#include "simulator/host/host_file.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using Texts = std::vector<std::string>;

// A host of a partitioned adapter and one that is not, without a fault.
constexpr const char* RightHost = R"({
  "name": "h", "isnsServers": ["192.0.2.5"], "reachable": [{"address": "192.0.2.1"}],
  "adapters": [
    {"name": "A0", "number": 0, "type": "CNA", "partitionState": 1, "card": {},
     "partitions": {"completionCode": 201},
     "ports": [
       {"name": "Port 1", "link": {}, "resources": {"completionCode": 201}, "functions": [
         {"number": 0, "mac": "02-00-5E-10-00-00",
          "ethernet": {"interface": "eth0", "tcpIp": {"address": "192.0.2.10"}}},
         {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {
           "tcpIp": {"address": "192.0.2.20"},
           "storage": {"portals": [{"address": "192.0.2.50"}],
             "targets": [{"name": "iqn.a", "portal": {"address": "192.0.2.50"}, "discovery": "Static"}],
             "sessions": [{"id": 1, "target": "iqn.a", "portal": {"address": "192.0.2.50"}}]},
           "boot": {"parametersByDhcp": "Disabled"}}}]},
       {"name": "Port 2", "link": {}, "functions": [
         {"number": 1, "mac": "02-00-5E-10-00-01", "ethernet": {"interface": "eth1"}}]}]},
    {"name": "A1", "number": 1, "type": "CNA", "partitionState": 3, "card": {},
     "partitions": {"mode": "MF", "functions": [{"personality": "FCoE"}]},
     "ports": [{"name": "Port 1", "link": {}, "functions": [
       {"number": 0, "mac": "02-00-5E-20-00-00", "fcoe": {
         "portWwn": "10:00:02:00:5E:20:00:00", "nodeWwn": "20:00:02:00:5E:20:00:00",
         "fcid": "010400", "bindings": [{"targetPortWwn": "50:00:02:00:5E:40:00:01", "target": 3}],
         "virtualPorts": [{"portWwn": "10:01:02:00:5E:20:00:00",
                           "nodeWwn": "20:01:02:00:5E:20:00:00", "fcid": "010401"}]}}]}]}],
  "iscsiTargets": [{"name": "iqn.a", "portals": [{"address": "192.0.2.50"}], "luns": [{"number": 0}]}],
  "fcoeFabric": {"targets": [{"portWwn": "50:00:02:00:5E:40:00:01",
    "nodeWwn": "50:00:02:00:5E:40:00:00", "fcid": "020000", "luns": [{"number": 0}]}]}})";

constexpr const char* Iscsi = "/adapters/0/ports/0/functions/1/iscsi";
constexpr const char* Fcoe = "/adapters/1/ports/0/functions/0/fcoe";

Texts LinesOf(const std::vector<HostFinding>& findings) {
    Texts lines;
    for (const HostFinding& finding : findings) {
        lines.push_back((finding.severity == HostFinding::Severity::Error ? "error " : "warning ") +
                        (finding.place.empty() ? "" : finding.place + ": ") + finding.text);
    }
    return lines;
}

// What is found in the right host once `value` has been put to `path`, as a JSON Patch adds it.
Texts FoundWith(const std::string& path, const char* value) {
    Json host = Json::parse(RightHost);
    host.patch_inplace(
        Json::array({{{"op", "add"}, {"path", path}, {"value", Json::parse(value)}}}));
    return LinesOf(FindingsIn(host.dump()));
}

TEST(Check, FindsNothingInARightHost) {
    EXPECT_EQ(LinesOf(FindingsIn(RightHost)), Texts{});
    EXPECT_EQ(LinesOf(FindingsIn(tavrosim::DefaultHostText())), Texts{});
}

TEST(Check, TellsTheLineAndColumnOfASyntaxErrorAndNothingElse) {
    EXPECT_EQ(LinesOf(FindingsIn("{\"name\": 5,\n \"adapters\": x}")),
              Texts{"error line 2, column 14: a syntax error"});
    EXPECT_EQ(LinesOf(FindingsIn("")), Texts{"error line 1, column 1: the text ends too early"});
    EXPECT_EQ(LinesOf(FindingsIn("[]")), Texts{"error an object is wanted, not an array"});
}

TEST(Check, SaysOfANewerFormatNothingElse) {
    EXPECT_EQ(LinesOf(FindingsIn(R"({"format": 2, "what": 1})")),
              Texts{"error the file has format 2; this library reads format 1"});
}

TEST(Check, TellsAllThatTheLibraryRefuses) {
    const Texts wanted{
        "error format: a number is wanted, not a text",
        "error initiator: an object is wanted, not an array",
        "error isnsServers[1]: a text is wanted, not a number",
        "error reachable[0].lossPercent: a whole number from 0 to 4294967295 is wanted",
        "error adapters[0]: \"number\" is missing",
        "error adapters[0]: member 5 is unknown",
        "error adapters[0]: member 6 is unknown",
        "error adapters[0].ports[0].functions[0]: exactly one of \"ethernet\", \"iscsi\" and "
        "\"fcoe\" is wanted",
        "error adapters[0].ports[0].functions[1].mac: a MAC of 12 hexadecimal digits is wanted",
        "error adapters[1].name: another adapter has this name",
    };
    EXPECT_EQ(LinesOf(FindingsIn(R"({
        "format": "1", "name": "h", "initiator": [], "isnsServers": ["192.0.2.5", 7],
        "reachable": [{"address": "192.0.2.1", "lossPercent": -1}],
        "adapters": [
          {"name": "A", "type": "CNA", "partitionState": 1, "ports": [{"name": "P", "functions": [
             {"number": 0, "mac": "02-00-5E-10-00-00"},
             {"number": 1, "mac": "no MAC", "iscsi": {}}]}], "what": 1, "is": 2},
          {"name": "A", "number": 1, "type": "CNA", "partitionState": 1, "ports": []}]})")),
              wanted);
}

TEST(Check, SaysNothingMoreOfWhatCouldNotBeRead) {
    const Texts wanted{
        "error adapters[0]: \"name\" is missing",
        "error adapters[0].ports[0].functions[0].mac: a text is wanted, not null",
        "error adapters[0].ports[0].functions[1]: \"mac\" is missing",
        "error adapters[1]: \"name\" is missing",
        "error adapters[1].ports: an array is wanted, not an object",
    };
    EXPECT_EQ(LinesOf(FindingsIn(R"({"name": "h", "adapters": [
          {"number": 0, "type": "CNA", "partitionState": 1, "ports": [{"name": "P", "functions": [
             {"number": 0, "mac": null, "iscsi": {}}, {"number": 1, "iscsi": {}}]}]},
          {"number": 1, "type": "CNA", "partitionState": 1, "ports": {}}]})")),
              wanted);
}

// A default in the place of a value that could not be read contradicts nothing.
TEST(Check, WarnsOfNothingThatOnlyFollowsFromAnError) {
    constexpr struct {
        const char* path;
        const char* value;
        const char* finding;
    } Errors[] = {
        {"/adapters/0/ports/0/functions/1/iscsi/storage/targets/0/name", "5",
         "adapters[0].ports[0].functions[1].iscsi.storage.targets[0].name: a text is wanted, not a "
         "number"},
        {"/adapters/0/ports/0/functions/1/iscsi/storage/targets", "5",
         "adapters[0].ports[0].functions[1].iscsi.storage.targets: an array is wanted, not a "
         "number"},
        {"/adapters/1/partitions/functions/0/personality", "5",
         "adapters[1].partitions.functions[0].personality: a text is wanted, not a number"},
        {"/adapters/1/partitionState", "\"1\"",
         "adapters[1].partitionState: a number is wanted, not a text"},
        // Read as 0, it would be that of the first adapter, and the other way round.
        {"/adapters/1/number", "\"1\"", "adapters[1].number: a number is wanted, not a text"},
        {"/adapters/0/number", "\"1\"", "adapters[0].number: a number is wanted, not a text"},
        {"/adapters/0/ports/0/functions/0/number", "null",
         "adapters[0].ports[0].functions[0].number: a number is wanted, not null"},
        {"/adapters/0/ports/0/resources/completionCode", "\"x\"",
         "adapters[0].ports[0].resources.completionCode: a number is wanted, not a text"},
        {"/adapters/0/partitions/completionCode", "\"x\"",
         "adapters[0].partitions.completionCode: a number is wanted, not a text"},
        {"/adapters/0/ports/0/functions/1/iscsi/boot/parametersByDhcp", "1",
         "adapters[0].ports[0].functions[1].iscsi.boot.parametersByDhcp: a text is wanted, not a "
         "number"},
    };
    Json host = Json::parse(RightHost);
    host["adapters"][0]["pendingPartitions"] =
        Json::parse(R"({"functions": [{"lowerLimit": "1"}]})");
    host["adapters"][0]["ports"][0]["resources"]["pendingPersonality"] = "FCoE";
    host["adapters"][1]["number"] = 1;
    const auto foundWith = [](Json changed, const char* path, const char* value) {
        changed[Json::json_pointer(path)] = Json::parse(value);
        return LinesOf(FindingsIn(changed.dump()));
    };
    ASSERT_EQ(LinesOf(FindingsIn(host.dump())), Texts{});
    for (const auto& each : Errors) {
        EXPECT_EQ(foundWith(host, each.path, each.value),
                  Texts{std::string("error ") + each.finding});
    }
    host["adapters"][1]["number"] = 0;
    EXPECT_EQ(foundWith(host, "/adapters/0/number", "\"1\""),
              Texts{"error adapters[0].number: a number is wanted, not a text"});
    // Two portals of which only the ports are known.
    Json& portals = host["adapters"][0]["ports"][0]["functions"][1]["iscsi"]["storage"]["portals"];
    host["adapters"][1]["number"] = 1;
    portals = Json::array({{{"address", 1}}, {{"address", 2}}});
    EXPECT_EQ(LinesOf(FindingsIn(host.dump())).size(), 2U);
}

TEST(Check, HoldsCapturedAnswersToTheirRecords) {
    const Texts wanted{
        "error captured: member 3 is unknown",
        "error captured.answers[0].call: there is no such entry point",
        "error captured.answers[2].output: a text is wanted, not a number",
        "error captured.host.name: a text is wanted, not a number",
        "error captured.host: \"adapters\" is missing",
    };
    Json host = Json::parse(RightHost);
    host["captured"] = Json::parse(R"({"answers": [
        {"call": "Other"}, {"call": "GetHostName", "output": "h"},
        {"call": "GetHostName", "output": 5}], "host": {"name": 1}, "what": 1})");
    EXPECT_EQ(LinesOf(FindingsIn(host.dump())), wanted);
}

TEST(Check, QuotesNothingThatStandsInTheFile) {
    for (const char* path :
         {"/adapters/0/partitions/mode", "/initiator", "/fcoeFabric/targets/0/fcid",
          "/adapters/0/ports/0/functions/0/mac", "/secret-text", "/adapters/0/type",
          "/reachable/0/address", "/fcoeFabric/name",
          "/adapters/0/ports/0/functions/0/ethernet/tcpIp/vlanId"}) {
        const Texts found = FoundWith(path, R"("secret-text")");
        ASSERT_EQ(found.size(), 1U) << path;
        EXPECT_EQ(found[0].find("secret"), std::string::npos) << found[0];
    }
}

struct Contradiction {
    std::string path;
    const char* value;
    const char* finding;
};

const Contradiction Contradictions[] = {
    {"/adapters/1/number", "0", "adapters[1].number: another adapter has this number"},
    {"/adapters/0/type", R"("NIC")", "adapters[0].type: \"CNA\" or \"Ethernet\" is wanted"},
    {"/adapters/0/partitionState", "4", "adapters[0].partitionState: 1, 2 or 3 is wanted"},
    {"/adapters/0/ports/1/name", R"("Port 1")",
     "adapters[0].ports[1].name: another port of the adapter has this name"},
    {"/adapters/0/ports/0/functions/1/number", "0",
     "adapters[0].ports[0].functions[1].number: another function of the adapter has this number"},
    {"/adapters/0/ports/1/functions/0/number", "4",
     "adapters[0].ports[1].functions[0].number: a function of this number belongs to port 1"},
    {"/adapters/0/partitions/mode", R"("MF")",
     "adapters[0].partitions.mode: the adapter's partition state tells another mode"},
    {"/adapters/0/partitions/completionCode", "7",
     "adapters[0].partitions.completionCode: 0, 5 or 201 is wanted"},
    {"/adapters/0/pendingPartitions", "{}",
     "adapters[0].pendingPartitions: what is pending is in force already"},
    {"/adapters/1/pendingPartitions", "{}",
     "adapters[1].pendingPartitions: nothing can be pending, since the completion code says that "
     "changes do not wait for a restart"},
    {"/adapters/0/ports/1/resources", R"({"completionCode": 5, "pendingPersonality": "FCoE"})",
     "adapters[0].ports[1].resources.pendingPersonality: nothing can be pending, since the "
     "completion code says that changes do not wait for a restart"},
    {"/adapters/0/ports/0/resources/pendingPersonality", R"("iSCSI")",
     "adapters[0].ports[0].resources.pendingPersonality: what is pending is in force already"},
    {"/adapters/1/partitions/functions/0/personality", R"("iSCSI")",
     "adapters[1].ports[0].functions[0]: the partitions give this function another personality"},
    {"/adapters/1/ports/0/functions/0/number", "8",
     "adapters[1].ports[0].functions[0].number: a partitioned adapter has the functions 0 to 7"},
    {"/adapters/1/partitions/functions/0/lowerLimit", R"("101")",
     "adapters[1].partitions.functions[0].lowerLimit: a whole number from 0 to 100 is wanted"},
    {"/adapters/1/partitions/functions/0",
     R"({"personality": "FCoE", "lowerLimit": "9", "upperLimit": "8"})",
     "adapters[1].partitions.functions[0]: the lower limit is above the upper one"},
    {"/isnsServers/1", R"("192.0.2.5")", "isnsServers[1]: this address stands twice"},
    {"/reachable/0/address", R"("elsewhere")",
     "reachable[0].address: an IPv4 or IPv6 address is wanted"},
    {"/reachable/0/lossPercent", "101", "reachable[0].lossPercent: at most 100 is wanted"},
    {"/reachable/1", R"({"address": "192.0.2.1"})",
     "reachable[1].address: this address stands twice"},
    {"/adapters/0/ports/1/functions/0/ethernet/interface", R"("eth0")",
     "adapters[0].ports[1].functions[0].ethernet.interface: another function has this interface"},
    {std::string(Iscsi) + "/tcpIp/address", R"("192.0.2.10")",
     "adapters[0].ports[0].functions[1].iscsi.tcpIp.address: another function has this address"},
    {std::string(Iscsi) + "/tcpIp/gateway", R"("192.0.2.300")",
     "adapters[0].ports[0].functions[1].iscsi.tcpIp.gateway: an IPv4 address is wanted"},
    {std::string(Iscsi) + "/tcpIp/addressIPv6", R"("192.0.2.30")",
     "adapters[0].ports[0].functions[1].iscsi.tcpIp.addressIPv6: an IPv6 address is wanted"},
    {std::string(Iscsi) + "/tcpIp/vlanId", R"("4095")",
     "adapters[0].ports[0].functions[1].iscsi.tcpIp.vlanId: the text of a whole number from 0 to "
     "4094 is wanted"},
    {std::string(Iscsi) + "/tcpIp/pendingVlanId", R"("5")",
     "adapters[0].ports[0].functions[1].iscsi.tcpIp.pendingVlanId: only an Ethernet function can "
     "have one"},
    {"/adapters/0/ports/0/functions/0/ethernet/tcpIp/pendingVlanId", R"("0")",
     "adapters[0].ports[0].functions[0].ethernet.tcpIp.pendingVlanId: what is pending is in force "
     "already"},
    {std::string(Iscsi) + "/storage/portals/1", R"({"address": "192.0.2.50", "port": "3260"})",
     "adapters[0].ports[0].functions[1].iscsi.storage.portals[1]: this portal is known twice"},
    {std::string(Iscsi) + "/storage/targets/1",
     R"({"name": "iqn.a", "portal": {"address": "192.0.2.51"}, "discovery": "Static"})",
     "adapters[0].ports[0].functions[1].iscsi.storage.targets[1].name: this target is known twice"},
    {std::string(Iscsi) + "/storage/sessions/0/id", "0",
     "adapters[0].ports[0].functions[1].iscsi.storage.sessions[0].id: sessions are numbered from "
     "1"},
    {std::string(Iscsi) + "/storage/sessions/1",
     R"({"id": 1, "target": "iqn.a", "portal": {"address": "192.0.2.50"}})",
     "adapters[0].ports[0].functions[1].iscsi.storage.sessions[1].id: another session of the "
     "function has this number"},
    {std::string(Iscsi) + "/storage/sessions/0/target", R"("iqn.b")",
     "adapters[0].ports[0].functions[1].iscsi.storage.sessions[0].target: the function does not "
     "know this target"},
    {std::string(Iscsi) + "/boot/secondTarget", R"({"used": "Enabled"})",
     "adapters[0].ports[0].functions[1].iscsi.boot.secondTarget: a target that is used needs a "
     "name unless the settings come from DHCP"},
    {"/iscsiTargets/1", R"({"name": "iqn.a", "portals": []})",
     "iscsiTargets[1].name: another target has this name"},
    {"/iscsiTargets/0/portals/1", R"({"address": "192.0.2.50"})",
     "iscsiTargets[0].portals[1]: the target answers here already"},
    {"/iscsiTargets/0/luns/1", R"({"number": 0})",
     "iscsiTargets[0].luns[1].number: another LUN of the target has this number"},
    {std::string(Fcoe) + "/virtualPorts/0/fcid", R"("010400")",
     "adapters[1].ports[0].functions[0].fcoe.virtualPorts[0].fcid: this FCID is given twice"},
    {std::string(Fcoe) + "/bindings/1",
     R"({"targetPortWwn": "50:00:02:00:5E:40:00:02", "target": 3})",
     "adapters[1].ports[0].functions[0].fcoe.bindings[1]: another binding has this bus, target and "
     "LUN"},
    {"/fcoeFabric/targets/0/fcid", R"("010401")",
     "fcoeFabric.targets[0].fcid: this FCID is given twice"},
    {"/fcoeFabric/targets/0/portWwn", R"("10-01-02-00-5e-20-00-00")",
     "fcoeFabric.targets[0].portWwn: a port of the host has this WWN"},
    {"/fcoeFabric/targets/0/luns/1", R"({"number": 0})",
     "fcoeFabric.targets[0].luns[1].number: another LUN of the target has this number"},
    {"/fcoeFabric/fcfMac", R"("none")",
     "fcoeFabric.fcfMac: a MAC of 12 hexadecimal digits is wanted"},
};

TEST(Check, WarnsOfWhatTheLibraryLoadsThoughNoHostCanBeSo) {
    for (const Contradiction& each : Contradictions) {
        EXPECT_EQ(FoundWith(each.path, each.value), Texts{std::string("warning ") + each.finding});
    }
}

TEST(Check, AllowsWhatSeveralFunctionsMayHave) {
    for (const char* address : {R"("0.0.0.0")", R"("")"}) {
        EXPECT_EQ(FoundWith(std::string(Iscsi) + "/tcpIp/address", address), Texts{});
    }
    Json host = Json::parse(RightHost);
    for (Json& function : host["adapters"][0]["ports"][0]["functions"]) {
        Json& part = function.contains("iscsi") ? function["iscsi"] : function["ethernet"];
        part["tcpIp"]["addressIPv6"] = "fe80::1";
    }
    EXPECT_EQ(LinesOf(FindingsIn(host.dump())), Texts{});
}

// Makes one random thing of a JSON value wrong, or leaves it so that it is still right.
void Damage(Json& json, std::mt19937& random) {
    if (!json.is_structured() || json.empty() || random() % 6 == 0) {
        const Json others[] = {nullptr, -1, "x", Json::array(), Json::object()};
        json = others[random() % std::size(others)];
        return;
    }
    const auto member =
        std::next(json.begin(), static_cast<std::ptrdiff_t>(random() % json.size()));
    if (json.is_object() && random() % 6 == 0) {
        json["member " + std::to_string(random() % 3)] = 1;
    } else if (random() % 6 == 0) {
        json.erase(member);
    } else {
        Damage(*member, random);
    }
}

// The library and the check look at a file with the same code: what the library says of it is the
// first error.
TEST(Check, BeginsWithWhatTheLibrarySays) {
    std::mt19937 random(99);
    int refused = 0;
    for (int round = 0; round < 200; ++round) {
        Json host = Json::parse(RightHost);
        for (std::size_t damages = 1 + random() % 4; damages > 0; --damages) {
            Damage(host, random);
        }
        const std::vector<HostFinding> findings = FindingsIn(host.dump());
        const bool hasError =
            !findings.empty() && findings[0].severity == HostFinding::Severity::Error;
        try {
            tavrosim::HostFromText(host.dump());
            EXPECT_FALSE(hasError) << host;
        } catch (const tavrolib::ShapeError& error) {
            ASSERT_TRUE(hasError) << host;
            EXPECT_EQ(LinesOf(findings)[0], std::string("error ") + error.what());
            ++refused;
        }
    }
    EXPECT_GT(refused, 50);
}

TEST(Check, TellsPeopleTheFileThePlaceAndWhetherItIsAWarning) {
    const std::vector<HostFinding> findings{
        {.severity = HostFinding::Severity::Error, .place = "", .text = "one"},
        {.severity = HostFinding::Severity::Warning, .place = "a[1].b", .text = "two"}};
    EXPECT_EQ(TextOfFindings(findings, "h.json"), "h.json: one\nh.json: a[1].b: warning: two\n");
    EXPECT_EQ(JsonOfFindings(findings), Json::parse(R"({"format": 1, "findings": [
        {"place": "", "severity": "error", "text": "one"},
        {"place": "a[1].b", "severity": "warning", "text": "two"}]})"));
    EXPECT_EQ(JsonOfFindings({}), Json::parse(R"({"format": 1, "findings": []})"));
}

}  // namespace
}  // namespace tavrohost
