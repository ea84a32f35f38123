#include "simulator/host/restart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/json/place.h"
#include "simulator/host/host_file.h"
#include "simulator/host/personalities.h"

namespace tavrosim {
namespace {

using testing::ElementsAre;

constexpr const char* TwoPorts = R"({
  "name": "h",
  "adapters": [
    {"name": "A", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
      {"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-0E", "ethernet": {"interface": "eth0"}},
        {"number": 2, "mac": "02-00-5E-10-00-10",
         "iscsi": {"tcpIp": {"address": "192.0.2.7"}}}]},
      {"name": "Port 2", "functions": [
        {"number": 1, "mac": "02-00-5E-10-00-0F",
         "ethernet": {"interface": "eth2", "tcpIp": {"vlanId": "0", "pendingVlanId": "7"}}},
        {"number": 3, "mac": "02-00-5E-10-00-11",
         "fcoe": {"portWwn": "10:00:02:00:5E:10:00:11", "nodeWwn": "20:00:02:00:5E:10:00:11",
                  "fcid": "010000"}}]}]},
    {"name": "B", "number": 1, "type": "Ethernet", "partitionState": 1, "ports": [
      {"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-12", "ethernet": {"interface": "eth1"}}]}]}]
})";

// "number personality MAC", and of an FCoE function its port WWN too.
std::vector<std::string> FunctionsOf(const Port& port) {
    std::vector<std::string> rows;
    for (const Function& function : port.functions) {
        rows.push_back(std::to_string(function.number) + " " + PersonalityOf(function) + " " +
                       function.mac + (function.fcoe ? " " + function.fcoe->portWwn : ""));
    }
    return rows;
}

class RestartedHost : public testing::Test {
  protected:
    // What is kept survives the host file, which refuses what contradicts itself.
    void RestartHost() {
        Restart(host);
        CheckHost(host);
        host = HostFromText(TextFromHost(host));
    }

    Partitions& PendingPartitions() {
        Partitions& pending = host.adapters[0].pendingPartitions.emplace();
        pending.mode = PartitionedMode;
        return pending;
    }

    Adapter& Card() { return host.adapters[0]; }

    Host host = HostFromText(TwoPorts);
};

TEST_F(RestartedHost, NothingPendingChangesNothing) {
    host.adapters[0].ports[1].functions[0].ethernet->tcpIp.pendingVlanId.reset();
    const std::string before = TextFromHost(host);
    RestartHost();
    EXPECT_EQ(TextFromHost(host), before);
}

TEST_F(RestartedHost, APendingVlanIsTheVlan) {
    RestartHost();
    const TcpIp& settings = host.adapters[0].ports[1].functions[0].ethernet->tcpIp;
    EXPECT_EQ(settings.vlanId, "7");
    EXPECT_FALSE(settings.pendingVlanId);
}

TEST_F(RestartedHost, ThePortsOfAPartitionedAdapterHaveTheFunctionsOfThePartitions) {
    Partitions& pending = PendingPartitions();
    pending.functions[2].personality = IscsiPersonality;
    pending.functions[3].personality = IscsiPersonality;
    pending.functions[4].personality = FcoePersonality;
    RestartHost();
    EXPECT_EQ(Card().partitionState, tavroapi::Partitioned);
    EXPECT_FALSE(Card().pendingPartitions);
    // Function 4 would get the address that the other adapter has, and goes one further.
    EXPECT_THAT(FunctionsOf(Card().ports[0]),
                ElementsAre("0 Ethernet 02-00-5E-10-00-0E", "2 iSCSI 02-00-5E-10-00-10",
                            "4 FCoE 02-00-5E-10-00-13 10:00:02:00:5E:10:00:13",
                            "6 Ethernet 02-00-5E-10-00-14"));
    EXPECT_THAT(FunctionsOf(Card().ports[1]),
                ElementsAre("1 Ethernet 02-00-5E-10-00-0F", "3 iSCSI 02-00-5E-10-00-11",
                            "5 Ethernet 02-00-5E-10-00-15", "7 Ethernet 02-00-5E-10-00-16"));
}

TEST_F(RestartedHost, WhatStaysKeepsItsSettingsAndWhatIsNewHasItsOwnNames) {
    PendingPartitions().functions[2].personality = IscsiPersonality;
    host.adapters[0].pendingPartitions->functions[4].personality = FcoePersonality;
    RestartHost();
    const std::vector<Function>& functions = Card().ports[0].functions;
    EXPECT_EQ(functions[1].iscsi->tcpIp.address, "192.0.2.7");
    EXPECT_EQ(functions[2].fcoe->nodeWwn, "20:00:02:00:5E:10:00:13");
    EXPECT_EQ(functions[2].fcoe->fcid, "010100");  // the other port's function had the first
    EXPECT_EQ(functions[3].ethernet->interfaceName, "eth3");
    EXPECT_EQ(Card().ports[1].functions[1].ethernet->interfaceName, "eth4");
}

TEST_F(RestartedHost, AnUndividedConvergedPortHasEthernetAndItsPersonality) {
    Partitions& pending = PendingPartitions();
    pending.functions[4].personality = FcoePersonality;
    RestartHost();
    host.adapters[0].pendingPartitions.emplace();
    host.adapters[0].ports[0].resources.emplace().pendingPersonality = FcoePersonality;
    RestartHost();
    EXPECT_EQ(Card().partitionState, tavroapi::NotPartitioned);
    EXPECT_EQ(Card().ports[0].resources->personality, "FCoE");
    EXPECT_FALSE(Card().ports[0].resources->pendingPersonality);
    EXPECT_THAT(FunctionsOf(Card().ports[0]),
                ElementsAre("0 Ethernet 02-00-5E-10-00-0E",
                            "2 FCoE 02-00-5E-10-00-10 10:00:02:00:5E:10:00:10"));
    EXPECT_THAT(FunctionsOf(Card().ports[1]),
                ElementsAre("1 Ethernet 02-00-5E-10-00-0F", "3 iSCSI 02-00-5E-10-00-11"));
}

TEST_F(RestartedHost, APersonalityChangesItsPortAlone) {
    Card().ports[0].resources.emplace().pendingPersonality = FcoePersonality;
    const std::vector<std::string> otherPort = FunctionsOf(Card().ports[1]);
    RestartHost();
    EXPECT_THAT(FunctionsOf(Card().ports[0]),
                ElementsAre("0 Ethernet 02-00-5E-10-00-0E",
                            "2 FCoE 02-00-5E-10-00-10 10:00:02:00:5E:10:00:10"));
    EXPECT_EQ(FunctionsOf(Card().ports[1]), otherPort);
    Card().ports[0].resources->pendingPersonality = IscsiPersonality;
    RestartHost();
    EXPECT_THAT(FunctionsOf(Card().ports[0]),
                ElementsAre("0 Ethernet 02-00-5E-10-00-0E", "2 iSCSI 02-00-5E-10-00-10"));
}

TEST_F(RestartedHost, FlowControlAndLimitsChangeNoFunction) {
    host = DefaultHost();
    const std::vector<std::string> undivided = FunctionsOf(Card().ports[0]);
    ASSERT_EQ(undivided.size(), 3U);
    Partitions& pending = Card().pendingPartitions.emplace();
    pending.flowControl[0] = "Disabled";
    Adapter& divided = host.adapters[1];
    ASSERT_EQ(divided.partitionState, tavroapi::Partitioned);
    const std::vector<std::string> functions = FunctionsOf(divided.ports[0]);
    divided.pendingPartitions = divided.partitions;
    divided.pendingPartitions->functions[0].upperLimit = "50";
    RestartHost();
    EXPECT_EQ(Card().partitions->flowControl[0], "Disabled");
    EXPECT_EQ(FunctionsOf(Card().ports[0]), undivided);
    EXPECT_EQ(host.adapters[1].partitions->functions[0].upperLimit, "50");
    EXPECT_EQ(FunctionsOf(host.adapters[1].ports[0]), functions);
}

TEST_F(RestartedHost, ANewFunctionGetsANumberOfItsOwn) {
    Card().ports.pop_back();
    Card().ports[0].functions.erase(Card().ports[0].functions.begin() + 1);
    Card().ports[0].functions[0].number = 1;
    Card().ports[0].resources.emplace().pendingPersonality = FcoePersonality;
    RestartHost();
    EXPECT_THAT(FunctionsOf(Card().ports[0]),
                ElementsAre("1 Ethernet 02-00-5E-10-00-0E",
                            "2 FCoE 02-00-5E-10-00-0F 10:00:02:00:5E:10:00:0F"));
}

TEST_F(RestartedHost, NothingCanBePendingWhereThePartitionsAreFixed) {
    Card().partitionState = tavroapi::PartitionedForGood;
    PendingPartitions();
    EXPECT_THROW(CheckHost(host), tavrolib::ShapeError);
}

TEST_F(RestartedHost, AnEthernetAdapterKeepsOneFunctionAPort) {
    Partitions& pending = host.adapters[1].pendingPartitions.emplace();
    pending.mode = PartitionedMode;
    RestartHost();
    EXPECT_EQ(host.adapters[1].ports[0].functions.size(), 8U);
    host.adapters[1].pendingPartitions.emplace();
    RestartHost();
    EXPECT_THAT(FunctionsOf(host.adapters[1].ports[0]),
                ElementsAre("0 Ethernet 02-00-5E-10-00-12"));
}

TEST_F(RestartedHost, APortWithoutFunctionsStaysSo) {
    Card().ports[1].functions.clear();
    PendingPartitions();
    RestartHost();
    EXPECT_TRUE(Card().ports[1].functions.empty());
    EXPECT_EQ(Card().ports[0].functions.size(), 4U);
}

}  // namespace
}  // namespace tavrosim
