#include "twin/rehearse/drift.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host/host_file.h"

namespace tavrohost {
namespace {

using testing::ElementsAre;

Change At(HostPart where) {
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
const Change OfAdapter = At({"CNA", {}, {}, {}, "pendingPartitions"});
const Change OfPort = At({"CNA", "Port 2", {}, {}, "link.status"});
const Change OfInitiator = At({{}, {}, {}, {}, "initiator.name"});
const Change OfInitiatorLogin = At({{}, {}, {}, {}, "initiator.login.multipath"});
const Change OfServer = At({{}, {}, {}, {}, "isnsServers[192.0.2.1]"});

const char* const HostText = R"({
    "name": "small",
    "adapters": [{"name": "CNA", "number": 0, "type": "CNA", "partitionState": 1,
      "ports": [{"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
        {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {}}]}]}]})";

// What of all the changes above lies where the command works, as the members.
std::vector<std::string> Within(const WorkedOn& worked) {
    std::vector<std::string> members;
    for (const Change& change : ChangesWithin(worked, tavrosim::HostFromText(HostText),
                                              {OfEthernet, OfIscsi, OfOtherAdapter, OfAdapter,
                                               OfPort, OfInitiator, OfInitiatorLogin, OfServer})) {
        members.push_back(change.where.key + ' ' + change.where.member);
    }
    return members;
}

TEST(Drift, OfAFunctionThatIsChangedAndOfWhatHoldsIt) {
    EXPECT_THAT(Within({{OfEthernet}, {}}), ElementsAre("02-00-5E-10-00-00 tcpIp.address",
                                                        " pendingPartitions", " link.status"));
}

TEST(Drift, OfAFunctionThatIsOnlyNamedHoweverItIsWritten) {
    EXPECT_THAT(Within({{}, {"02:00:5e:10:00:02"}}),
                ElementsAre("02-00-5E-10-00-02 tcpIp", " pendingPartitions", " link.status"));
    EXPECT_THAT(Within({{}, {"another", ""}}), testing::IsEmpty());
}

TEST(Drift, OfEverythingInAnAdapterThatIsChangedItself) {
    EXPECT_THAT(Within({{OfAdapter}, {}}),
                ElementsAre("02-00-5E-10-00-00 tcpIp.address", "02-00-5E-10-00-02 tcpIp",
                            " pendingPartitions", " link.status"));
}

TEST(Drift, OfTheSameThingOfTheHostAsAWhole) {
    EXPECT_THAT(Within({{OfInitiator}, {}}),
                ElementsAre(" initiator.name", " initiator.login.multipath"));
    EXPECT_THAT(Within({{OfServer}, {}}), ElementsAre(" isnsServers[192.0.2.1]"));
}

TEST(Drift, NothingWhereACommandWorksOnNothing) {
    EXPECT_THAT(Within({}), testing::IsEmpty());
}

}  // namespace
}  // namespace tavrohost
