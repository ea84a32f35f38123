#include "twin/anonymous/stand_ins.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "simulator/host/told_hardware.h"
#include "twin/anonymous/findings.h"
#include "unit/twin/capture/captured_twin.h"
#include "unit/twin/random_host.h"

namespace tavrohost_test {
namespace {

using tavrolib::Json;

// An answer to a reading of an Ethernet port, whose texts without a meaning are given.
Json PortAnswer(const std::string& request, const std::string& fourth, const std::string& fifth) {
    Json texts = Json::array();
    for (int i = 0; i < 33; ++i) {
        texts.push_back("");
    }
    texts[3] = fourth;
    texts[4] = fifth;
    texts[16] = "5.2.3.0";
    Json answer = Json::object();
    answer["call"] = "DoOperation";
    answer["operation"] = 62;
    answer["request"] = request;
    answer["status"] = 0;
    answer["output"] = texts;
    return answer;
}

Json HostNameAnswer(const std::string& name) {
    Json answer = Json::object();
    answer["call"] = "GetHostName";
    answer["status"] = 0;
    answer["output"] = name;
    return answer;
}

std::string Text(const Json& answers, std::size_t answer, std::size_t position) {
    return answers[answer]["output"][position].get<std::string>();
}

TEST(StandIns, KeepSeparatorsAndLetterCaseOfMacs) {
    const Json told = tavrohost::WithStandIns(
        Json::array({PortAnswer("00-90-FA-1B-2C-3D", "at 00:90:fa:1b:2c:3d.", "0090FA1B2C3D"),
                     PortAnswer("00:90:fa:1b:2c:3e", "", "")}));
    EXPECT_EQ(told[0]["request"], "02-00-00-00-00-01");
    EXPECT_EQ(Text(told, 0, 3), "at 02:00:00:00:00:01.");
    EXPECT_EQ(Text(told, 0, 4), "020000000001");
    EXPECT_EQ(told[1]["request"], "02:00:00:00:00:02");
}

TEST(StandIns, OfWwnsEndInThoseOfTheirMacs) {
    const Json told = tavrohost::WithStandIns(Json::array({PortAnswer(
        "00-90-FA-1B-2C-3D", "wwn 10:00:00:90:FA:1B:2C:3D seen", "00-00-00-00-00-00")}));
    EXPECT_EQ(Text(told, 0, 3), "wwn 10:00:02:00:00:00:00:01 seen");
    EXPECT_EQ(Text(told, 0, 4), "00-00-00-00-00-00");
}

TEST(StandIns, ReplaceAddressesButNotVersionsAndMasks) {
    const Json told = tavrohost::WithStandIns(Json::array({PortAnswer(
        "00-90-FA-1B-2C-3D",
        "10.1.2.3:3260 and [2001:DB8:7::5]:3260, mask 255.255.240.0, 127.0.0.1",
        "firmware 5.2.3.0, again 10.1.2.3; gateway 10.1.2.4 at 12:30:45, :: and 0.0.0.0")}));
    EXPECT_EQ(Text(told, 0, 3),
              "198.18.0.1:3260 and [2001:db8::2]:3260, mask 255.255.240.0, 127.0.0.1");
    EXPECT_EQ(Text(told, 0, 4),
              "firmware 5.2.3.0, again 198.18.0.1; gateway 198.18.0.3 at 12:30:45, :: and 0.0.0.0");
    EXPECT_EQ(Text(told, 0, 16), "5.2.3.0");
}

TEST(StandIns, KeepSpellingsOfOneAddressApart) {
    const Json told = tavrohost::WithStandIns(Json::array(
        {PortAnswer("00-90-FA-1B-2C-3D", "2001:db8:7::5 2001:DB8:7::5 2001:db8:7:0::5", "")}));
    EXPECT_EQ(Text(told, 0, 3), "2001:db8::1 2001:DB8::1 2001:db8:0::1");
}

TEST(StandIns, ReplaceNamesWhereTheyAreWords) {
    Json refused = PortAnswer("00-90-FA-1B-2C-3D", "", "");
    refused["error"] = {{"code", 5},
                        {"details", "on mars, not on marsupial; iqn.1999-01.com.mars:a"}};
    const Json told = tavrohost::WithStandIns(Json::array({HostNameAnswer("mars"), refused}));
    EXPECT_EQ(told[0]["output"], "host-1");
    EXPECT_EQ(told[1]["error"]["details"],
              "on host-1, not on marsupial; iqn.2001-04.com.example:name-1");
    EXPECT_EQ(told[1]["error"]["code"], 5);
}

TEST(StandIns, AreNoValuesOfTheHost) {
    const Json told = tavrohost::WithStandIns(
        Json::array({HostNameAnswer("host-1"), PortAnswer("02-00-00-00-00-01", "198.18.0.1", "")}));
    EXPECT_EQ(told[0]["output"], "host-2");
    EXPECT_EQ(told[1]["request"], "02-00-00-00-00-02");
    EXPECT_EQ(Text(told, 1, 3), "198.18.0.2");
}

// What identifies a host, as its file holds it; nobody's addresses and the MACs that a fabric makes
// of its own numbers do not.
std::set<std::string> IdentifyingTexts(const tavrosim::Host& host) {
    std::set<std::string> texts{host.name, host.initiator.name};
    texts.insert(host.isnsServers.begin(), host.isnsServers.end());
    for (const tavrosim::Adapter& adapter : host.adapters) {
        texts.insert(adapter.card->serialNumber);
        for (const tavrosim::Port& port : adapter.ports) {
            for (const tavrosim::Function& function : port.functions) {
                texts.insert(function.mac);
                if (function.ethernet) {
                    texts.insert({function.ethernet->interfaceName,
                                  function.ethernet->tcpIp.address,
                                  function.ethernet->tcpIp.addressIPv6});
                }
                if (function.iscsi) {
                    texts.insert(
                        {function.iscsi->tcpIp.address, function.iscsi->tcpIp.addressIPv6});
                    for (const auto& portal : function.iscsi->storage.portals) {
                        texts.insert(portal.address);
                    }
                    for (const auto& target : function.iscsi->storage.targets) {
                        texts.insert(target.name);
                    }
                }
                if (function.fcoe) {
                    texts.insert({function.fcoe->portWwn, function.fcoe->nodeWwn,
                                  host.fcoeFabric.name, host.fcoeFabric.fcfMac});
                    for (const auto& virtualPort : function.fcoe->virtualPorts) {
                        texts.insert(virtualPort.portWwn);
                    }
                }
            }
        }
    }
    for (const auto& target : host.fcoeFabric.targets) {
        texts.insert({target.portWwn, target.nodeWwn, target.symbolicName});
    }
    std::erase_if(texts, [](const std::string& text) {
        return text.empty() || text == "0.0.0.0" || text == "::";
    });
    return texts;
}

bool HoldsWord(const std::string& text, const std::string& word) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        if (tavrohost::IsWordBoundary(text, at) &&
            tavrohost::IsWordBoundary(text, at + word.size())) {
            return true;
        }
    }
    return false;
}

TEST(StandIns, LeaveNoIdentifyingTextInAHost) {
    for (std::uint32_t seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        tavrosim::Host host = RandomHost(seed, Oddness::Foreseeable);
        const Json answers = tavrohost::WithStandIns(AnswersOf(host));
        const std::string document = tavrosim::TextFromHost(tavrohost::CaptureFrom(answers).host);
        for (const std::string& text : IdentifyingTexts(host)) {
            EXPECT_FALSE(HoldsWord(document, text)) << text;
        }
    }
}

// The stand-ins agree with one another wherever the simulator compares them.
TEST(StandIns, MakeAHostThatReadsBack) {
    for (std::uint32_t seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        tavrosim::Host host = RandomHost(seed, Oddness::Foreseeable);
        const Json answers = tavrohost::WithStandIns(AnswersOf(host));
        tavrosim::Host twin = TwinOf(answers);
        ASSERT_EQ(twin.adapters.size(), host.adapters.size());
        const Json told = AnswersOf(twin);
        ASSERT_EQ(told.size(), answers.size());
        for (std::size_t i = 0; i < told.size(); ++i) {
            ASSERT_TRUE(told[i] == answers[i]) << told[i].dump() << "\n" << answers[i].dump();
        }
    }
}

}  // namespace
}  // namespace tavrohost_test
