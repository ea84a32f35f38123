#include "twin/diff/difference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simulator/host/host_file.h"
#include "twin/diff/identity.h"
#include "twin/diff/text.h"

namespace tavrohost {
namespace {

using tavrosim::Host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// A host with an adapter of two ports: an Ethernet, an iSCSI and an FCoE function, all on the
// first.
Host SmallHost() {
    return tavrosim::HostFromText(R"({
        "name": "h", "isnsServers": ["192.0.2.5", "192.0.2.6"],
        "adapters": [{
            "name": "Tavro CNA 4610K", "number": 0, "type": "CNA", "partitionState": 1, "card": {},
            "ports": [
                {"name": "Port 1", "link": {}, "functions": [
                    {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
                    {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {"storage": {
                        "portals": [{"address": "192.0.2.50"}, {"address": "2001:db8::50"}]}}},
                    {"number": 4, "mac": "02-00-5E-10-00-04", "fcoe": {
                        "portWwn": "10:00:02:00:5E:10:00:04",
                        "nodeWwn": "20:00:02:00:5E:10:00:04"}}]},
                {"name": "Port 2", "link": {}, "functions": []}]}]})");
}

std::vector<tavrosim::Function>& FunctionsOf(Host& host) {
    return host.adapters[0].ports[0].functions;
}

TEST(Difference, TellsTheMemberTheFunctionAndBothValues) {
    Host after = SmallHost();
    FunctionsOf(after)[1].iscsi->tcpIp.address = "192.0.2.20";
    const Difference difference = DifferenceOf(SmallHost(), after);
    ASSERT_EQ(difference.changes.size(), 1U);
    const Change& change = difference.changes[0];
    EXPECT_EQ(change.kind, Change::Kind::Changed);
    EXPECT_EQ(change.where.adapter, "Tavro CNA 4610K");
    EXPECT_EQ(change.where.port, "Port 1");
    EXPECT_EQ(change.where.function, "iSCSI 02-00-5E-10-00-02");
    EXPECT_EQ(change.where.key, "02-00-5E-10-00-02");
    EXPECT_EQ(change.where.member, "tcpIp.address");
    EXPECT_EQ(change.before, "0.0.0.0");
    EXPECT_EQ(change.after, "192.0.2.20");
    EXPECT_EQ(difference.patch, Json::parse(R"([{"op": "replace",
        "path": "/adapters/0/ports/0/functions/1/iscsi/tcpIp/address", "value": "192.0.2.20"}])"));
    EXPECT_EQ(TextOf(difference),
              "Adapter Tavro CNA 4610K\n"
              "  Port 1\n"
              "    iSCSI 02-00-5E-10-00-02\n"
              "      tcpIp.address: 0.0.0.0 → 192.0.2.20\n");
}

TEST(Difference, OfOrderAloneIsNoneButForThePatch) {
    Host after = SmallHost();
    std::ranges::reverse(after.isnsServers);
    std::ranges::reverse(FunctionsOf(after)[1].iscsi->storage.portals);
    std::ranges::reverse(FunctionsOf(after));
    std::ranges::reverse(after.adapters[0].ports);
    const Difference difference = DifferenceOf(SmallHost(), after);
    EXPECT_THAT(difference.changes, IsEmpty());
    for (const Json& step : difference.patch) {
        EXPECT_EQ(step.at("op"), "move");
    }
    EXPECT_FALSE(difference.patch.empty());
}

TEST(Difference, KnowsAFunctionByItsIdentifierHoweverThatIsWritten) {
    Host after = SmallHost();
    FunctionsOf(after)[0].mac = "02:00:5e:10:00:00";
    FunctionsOf(after)[2].fcoe->portWwn = "10-00-02-00-5e-10-00-04";
    EXPECT_EQ(TextOf(DifferenceOf(SmallHost(), after)),
              "Adapter Tavro CNA 4610K\n"
              "  Port 1\n"
              "    Ethernet 02-00-5E-10-00-00\n"
              "      mac: 02-00-5E-10-00-00 → 02:00:5e:10:00:00\n"
              "    FCoE 10:00:02:00:5E:10:00:04\n"
              "      portWwn: 10:00:02:00:5E:10:00:04 → 10-00-02-00-5e-10-00-04\n");
}

TEST(Difference, TakesAFunctionOfAnotherKindForAnotherOne) {
    Host after = SmallHost();
    tavrosim::Function& function = FunctionsOf(after)[0];
    function.ethernet.reset();
    function.iscsi.emplace();
    EXPECT_EQ(TextOf(DifferenceOf(SmallHost(), after)),
              "Adapter Tavro CNA 4610K\n"
              "  Port 1\n"
              "    Ethernet 02-00-5E-10-00-00: removed\n"
              "      number: 0\n"
              "      mac: 02-00-5E-10-00-00\n"
              "      interface: eth0\n"
              "    iSCSI 02-00-5E-10-00-00: added\n"
              "      number: 0\n"
              "      mac: 02-00-5E-10-00-00\n");
}

TEST(Difference, KnowsAnAdapterByItsMacsThoughItsNameIsAnothers) {
    Host before = SmallHost();
    tavrosim::Adapter other = before.adapters[0];
    other.name = "Tavro CNA 4910K";
    FunctionsOf(before).resize(1);
    other.ports[0].functions.erase(other.ports[0].functions.begin());
    before.adapters.push_back(other);
    Host after = before;
    std::swap(after.adapters[0].name, after.adapters[1].name);
    EXPECT_EQ(TextOf(DifferenceOf(before, after)),
              "Adapter Tavro CNA 4610K\n"
              "  name: Tavro CNA 4610K → Tavro CNA 4910K\n"
              "Adapter Tavro CNA 4910K\n"
              "  name: Tavro CNA 4910K → Tavro CNA 4610K\n");
}

TEST(Difference, KnowsAnAdapterByItsNameWhenNoMacIsLeft) {
    Host after = SmallHost();
    FunctionsOf(after).resize(1);
    FunctionsOf(after)[0].mac = "02-00-5E-99-00-00";
    const Difference difference = DifferenceOf(SmallHost(), after);
    ASSERT_EQ(difference.changes.size(), 4U);  // three functions went, one came
    for (const Change& change : difference.changes) {
        EXPECT_EQ(change.where.adapter, "Tavro CNA 4610K");
        EXPECT_EQ(change.where.port, "Port 1");
    }
}

TEST(Difference, LeavesOutCountersUnlessTheyAreAskedFor) {
    Host after = SmallHost();
    FunctionsOf(after)[0].ethernet->statistics.emplace();
    FunctionsOf(after)[1].iscsi->storage.statistics.logins = 7;
    FunctionsOf(after)[1].iscsi->storage.lastSessionId = 9;
    const Difference without = DifferenceOf(SmallHost(), after);
    EXPECT_THAT(without.changes, IsEmpty());
    EXPECT_THAT(without.patch, IsEmpty());
    const std::string text = TextOf(DifferenceOf(SmallHost(), after, {.counters = true}));
    EXPECT_THAT(text, HasSubstr("statistics: added\n"));
    EXPECT_THAT(text, HasSubstr("storage.lastSessionId: 0 → 9\n"));
    EXPECT_THAT(text, HasSubstr("storage.statistics.logins: 0 → 7\n"));
}

TEST(Difference, ShowsWhatCameAsOneBlockWithoutTheUsual) {
    Host after = SmallHost();
    after.isnsServers.erase(after.isnsServers.begin());
    after.adapters[0].pendingPartitions.emplace().mode = "MF";
    after.adapters[0].pendingPartitions->functions[5].personality = "FCoE";
    auto& storage = FunctionsOf(after)[1].iscsi->storage;
    tavrosim::IscsiSession& session = storage.sessions.emplace_back();
    session.id = 3;
    session.target = "iqn.t";
    session.portal.address = "192.0.2.50";
    storage.portals.erase(storage.portals.begin() + 1);
    EXPECT_EQ(TextOf(DifferenceOf(SmallHost(), after)),
              "Host\n"
              "  isnsServers[192.0.2.5]: removed\n"
              "Adapter Tavro CNA 4610K\n"
              "  pendingPartitions: added\n"
              "    mode: MF\n"
              "    functions[5].personality: FCoE\n"
              "  Port 1\n"
              "    iSCSI 02-00-5E-10-00-02\n"
              "      storage.portals[[2001:db8::50]:3260]: removed\n"
              "        address: 2001:db8::50\n"
              "      storage.sessions[3]: added\n"
              "        id: 3\n"
              "        target: iqn.t\n"
              "        portal.address: 192.0.2.50\n");
}

TEST(Difference, ShowsAnAdapterThatWentWithItsPortsAndFunctions) {
    Host before = SmallHost();
    before.adapters[0].ports[0].functions.resize(1);
    Host after = before;
    after.adapters.clear();
    EXPECT_EQ(TextOf(DifferenceOf(before, after)),
              "Adapter Tavro CNA 4610K: removed\n"
              "  name: Tavro CNA 4610K\n"
              "  number: 0\n"
              "  type: CNA\n"
              "  partitionState: 1\n"
              "  Port 1\n"
              "    name: Port 1\n"
              "    Ethernet 02-00-5E-10-00-00\n"
              "      number: 0\n"
              "      mac: 02-00-5E-10-00-00\n"
              "      interface: eth0\n"
              "  Port 2\n"
              "    name: Port 2\n");
}

TEST(Difference, TellsWhatHasAnEmptyName) {
    Host before = SmallHost();
    before.adapters[0].ports[1].name = "";
    tavrosim::Adapter nameless = before.adapters[0];
    nameless.name = "";
    nameless.ports.clear();
    before.adapters.push_back(nameless);
    Host after = before;
    after.adapters.pop_back();
    after.adapters[0].ports.pop_back();
    const Difference difference = DifferenceOf(before, after);
    EXPECT_THAT(TextOf(difference), HasSubstr("  \"\": removed\n"));
    EXPECT_THAT(TextOf(difference), HasSubstr("Adapter \"\": removed\n"));
    EXPECT_THAT(TextOf(difference), Not(HasSubstr("4610K: removed")));
    EXPECT_THAT(TextOf(difference), Not(HasSubstr("Host")));
}

TEST(Difference, ShowsThePortsOfEachAdapterInTheirOrder) {
    Host before = SmallHost();
    tavrosim::Adapter other = before.adapters[0];
    other.name = "Tavro CNA 4910K";
    for (tavrosim::Function& function : other.ports[0].functions) {
        function.mac.replace(6, 2, "77");
        if (function.fcoe) {
            function.fcoe->portWwn = "10:00:02:00:77:10:00:04";
        }
    }
    before.adapters.push_back(other);
    Host after = before;
    for (tavrosim::Adapter& adapter : after.adapters) {
        for (tavrosim::Port& port : adapter.ports) {
            port.link.emplace().status = "changed";
        }
    }
    after.adapters[0].ports[0] = before.adapters[0].ports[0];
    const std::string text = TextOf(DifferenceOf(before, after));
    const std::size_t second = text.find("Adapter Tavro CNA 4910K");
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(text.substr(0, second).find("Port 1"), std::string::npos);
    EXPECT_NE(text.find("Port 1", second), std::string::npos);
    EXPECT_LT(text.find("Port 1", second), text.find("Port 2", second));
}

TEST(Difference, TellsAValueThatCameAlone) {
    Host after = SmallHost();
    FunctionsOf(after)[0].ethernet->tcpIp.pendingVlanId = "5";
    EXPECT_THAT(TextOf(DifferenceOf(SmallHost(), after)),
                HasSubstr("      tcpIp.pendingVlanId: (none) → 5\n"));
    EXPECT_THAT(TextOf(DifferenceOf(after, SmallHost())),
                HasSubstr("      tcpIp.pendingVlanId: 5 → (none)\n"));
}

TEST(Difference, QuotesATextThatCouldBeMistaken) {
    Host after = SmallHost();
    const auto shown = [&after](const char* name) {
        after.name = name;
        const std::string text = TextOf(DifferenceOf(SmallHost(), after));
        const std::string start = "Host\n  name: h → ";
        EXPECT_EQ(text.substr(0, start.size()), start);
        return text.substr(start.size());
    };
    EXPECT_EQ(shown("two words"), "two words\n");
    EXPECT_EQ(shown("gr\xC3\xBCn"), "gr\xC3\xBCn\n");
    EXPECT_EQ(shown(""), "\"\"\n");
    EXPECT_EQ(shown(" blank"), "\" blank\"\n");
    EXPECT_EQ(shown("(none)"), "\"(none)\"\n");
    EXPECT_EQ(shown("a → b"), "\"a → b\"\n");
    EXPECT_EQ(shown("\"quoted\""), "\"\\\"quoted\\\"\"\n");
    EXPECT_EQ(shown("line\nend \x1B[2J"), "\"line\\nend \\u001b[2J\"\n");
    EXPECT_EQ(shown("\xC2\x9B"), "\"\\u009b\"\n");
}

TEST(Difference, SaysOfSecretsOnlyThatTheyChanged) {
    Host before = SmallHost();
    before.initiator.login.targetSecret = "first-secret";
    Host after = before;
    after.initiator.login.targetSecret = "second-secret";
    auto& storage = FunctionsOf(after)[1].iscsi->storage;
    storage.portals[0].login.initiatorSecret = "third-secret";
    FunctionsOf(after)[1].iscsi->boot.emplace().firstTarget.chapSecret = "fourth-secret";
    tavrosim::NetworkTarget& target = after.iscsiTargets.emplace_back();
    target.name = "iqn.t";
    target.chap.emplace().targetName = "n";
    target.chap->targetSecret = "fifth-secret";
    const Difference difference = DifferenceOf(before, after);
    EXPECT_EQ(TextOf(difference),
              "Host\n"
              "  initiator.login.targetSecret: (secret changed)\n"
              "  iscsiTargets[iqn.t]: added\n"
              "    name: iqn.t\n"
              "    chap.targetName: n\n"
              "    chap.targetSecret: (secret)\n"
              "Adapter Tavro CNA 4610K\n"
              "  Port 1\n"
              "    iSCSI 02-00-5E-10-00-02\n"
              "      storage.portals[192.0.2.50:3260].login.initiatorSecret: (secret changed)\n"
              "      boot: added\n"
              "        firstTarget.chapSecret: (secret)\n");
    EXPECT_EQ(difference.patch.dump().find("-secret"), std::string::npos);
    // Without a secret at all, the file would not be one.
    EXPECT_EQ(difference.patch.back().at("value").at("chap").at("targetSecret"), "");
    const std::string full = DifferenceOf(before, after, {.withSecrets = true}).patch.dump();
    for (const char* secret : {"second-secret", "third-secret", "fourth-secret", "fifth-secret"}) {
        EXPECT_THAT(full, HasSubstr(secret));
    }
    EXPECT_EQ(full.find("first-secret"), std::string::npos);
}

// What the types of a host's values are: those in lists, and all members.
void Visit(const HostType& type, std::vector<const HostType*>& lists,
           std::vector<std::string>& keys) {
    if (type.shape == HostType::Shape::List) {
        lists.push_back(&type);
        Visit(*type.element, lists, keys);
    }
    for (const tavrosim::HostMember& member : type.members) {
        keys.emplace_back(member.key);
        Visit(*member.type, lists, keys);
    }
}

TEST(Identity, IsKnownForEveryListThatGrows) {
    std::vector<const HostType*> lists;
    std::vector<std::string> keys;
    Visit(tavrosim::HostTypeOf<Host>(), lists, keys);
    EXPECT_FALSE(lists.empty());
    for (const HostType* list : lists) {
        if (list->most > 100) {
            EXPECT_TRUE(HasNamedElements(*list)) << list->element->members.front().key;
        }
    }
    for (const std::string& key : keys) {
        EXPECT_EQ(IsSecretMember(key), key.find("ecret") != std::string::npos) << key;
    }
}

}  // namespace
}  // namespace tavrohost
