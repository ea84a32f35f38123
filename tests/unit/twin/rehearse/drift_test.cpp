#include "twin/rehearse/drift.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host/host_file.h"

namespace tavrohost {
namespace {

using testing::ElementsAre;

// A change of what the last of these names that is not empty is of.
Change At(HostPart where) {
    using enum HostPart::Level;
    where.level = !where.key.empty()       ? Function
                  : !where.port.empty()    ? Port
                  : !where.adapter.empty() ? Adapter
                                           : Host;
    Change change;
    change.where = std::move(where);
    return change;
}

const Change OfEthernet =
    At({"CNA", "Port 1", "Ethernet 02-00-5E-10-00-00", "02-00-5E-10-00-00", "tcpIp.address"});
const Change OfIscsi =
    At({"CNA", "Port 1", "iSCSI 02-00-5E-10-00-02", "02-00-5E-10-00-02", "tcpIp"});
const Change OfOtherAdapter =
    At({"Ethernet", "Port 1", "Ethernet 02-00-5E-30-00-00", "02-00-5E-30-00-00", {}});
const Change OfAdapter = At({"CNA", {}, {}, {}, "partitions.mode"});
const Change OfPort = At({"CNA", "Port 1", {}, {}, "link.status"});
const Change OfOtherPort = At({"CNA", "Port 2", {}, {}, "link.status"});
const Change OfNeighbour =
    At({"CNA", "Port 2", "FCoE 10:00:02:00:5E:10:00:05", "10:00:02:00:5E:10:00:05", "fcid"});
const Change OfInitiator = At({{}, {}, {}, {}, "initiator.name"});
const Change OfInitiatorLogin = At({{}, {}, {}, {}, "initiator.login.multipath"});
const Change OfServer = At({{}, {}, {}, {}, "isnsServers[192.0.2.1]"});

const char* const HostText = R"({
    "name": "small",
    "adapters": [{"name": "CNA", "number": 0, "type": "CNA", "partitionState": 1,
      "ports": [{"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
        {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {}}]},
        {"name": "Port 2", "functions": [
        {"number": 5, "mac": "02-00-5E-10-00-05", "fcoe": {
          "portWwn": "10:00:02:00:5E:10:00:05", "nodeWwn": "20:00:02:00:5E:10:00:05"}}]}]}]})";

std::vector<std::string> NamesOf(const std::vector<Change>& changes) {
    std::vector<std::string> names;
    for (const Change& change : changes) {
        names.push_back(change.where.port + ' ' + change.where.key + ' ' + change.where.member);
    }
    return names;
}

// What of all the changes above lies where the command works.
std::vector<std::string> Within(const WorkedOn& worked) {
    return NamesOf(ChangesWithin(worked, tavrosim::HostFromText(HostText),
                                 {OfEthernet, OfIscsi, OfNeighbour, OfOtherAdapter, OfAdapter,
                                  OfPort, OfOtherPort, OfInitiator, OfInitiatorLogin, OfServer}));
}

const char* const Ethernet = "Port 1 02-00-5E-10-00-00 tcpIp.address";
const char* const Iscsi = "Port 1 02-00-5E-10-00-02 tcpIp";
const char* const Fcoe = "Port 2 10:00:02:00:5E:10:00:05 fcid";
const char* const Adapter = "  partitions.mode";
const char* const FirstPort = "Port 1  link.status";
const char* const SecondPort = "Port 2  link.status";

TEST(Drift, OfAFunctionThatIsChangedAndOfWhatHoldsIt) {
    EXPECT_THAT(Within({{OfEthernet}, {}}), ElementsAre(Ethernet, Adapter, FirstPort));
}

TEST(Drift, OfAFunctionThatIsOnlyNamedHoweverItIsWritten) {
    EXPECT_THAT(Within({{}, {"02:00:5e:10:00:02"}}), ElementsAre(Iscsi, Adapter, FirstPort));
    EXPECT_THAT(Within({{}, {"02-00-5E-10-00-05"}}), ElementsAre(Fcoe, Adapter, SecondPort));
    EXPECT_THAT(Within({{}, {"another", ""}}), testing::IsEmpty());
}

TEST(Drift, OfEverythingInAnAdapterThatIsChangedItself) {
    EXPECT_THAT(Within({{OfAdapter}, {}}),
                ElementsAre(Ethernet, Iscsi, Fcoe, Adapter, FirstPort, SecondPort));
}

TEST(Drift, OfEverythingInAPortThatIsChangedItselfAndOfItsAdapter) {
    EXPECT_THAT(Within({{OfPort}, {}}), ElementsAre(Ethernet, Iscsi, Adapter, FirstPort));
    EXPECT_THAT(Within({{OfOtherPort}, {}}), ElementsAre(Fcoe, Adapter, SecondPort));
}

TEST(Drift, WithoutWhatChangesByItselfOrCannotBeTold) {
    const auto at = [](const std::string& member) {
        return At({"CNA", "Port 1", "Ethernet 02-00-5E-10-00-00", "02-00-5E-10-00-00", member});
    };
    const std::vector<Change> changes = {
        at("settings.temperature"),
        at("settings.temperatureLimit"),
        at("settings.speed"),
        at("tcpIp.pendingVlanId"),
        At({"CNA", "Port 1", {}, {}, "resources.pendingPersonality"}),
        At({"CNA", {}, {}, {}, "pendingPartitions"}),
        At({"CNA", {}, {}, {}, "pendingPartitions.functions[2]"})};
    EXPECT_THAT(
        NamesOf(ChangesWithin({{OfEthernet}, {}}, tavrosim::HostFromText(HostText), changes)),
        ElementsAre("Port 1 02-00-5E-10-00-00 settings.temperatureLimit",
                    "Port 1 02-00-5E-10-00-00 settings.speed"));
}

TEST(Drift, OfTheSameThingOfTheHostAsAWhole) {
    EXPECT_THAT(Within({{OfInitiator}, {}}),
                ElementsAre("  initiator.name", "  initiator.login.multipath"));
    EXPECT_THAT(Within({{OfServer}, {}}), ElementsAre("  isnsServers[192.0.2.1]"));
}

TEST(Drift, NothingWhereACommandWorksOnNothing) {
    EXPECT_THAT(Within({}), testing::IsEmpty());
}

}  // namespace
}  // namespace tavrohost
