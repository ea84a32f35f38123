#include "twin/anonymous/stand_ins.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "simulator/host/lookup.h"
#include "simulator/host/numerals.h"
#include "simulator/host/told_hardware.h"
#include "simulator/model/ip_address.h"
#include "tavroapi/operation_code.h"
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

TEST(StandIns, ReplaceAddressesWhateverStandsAroundThem) {
    const Json told = tavrohost::WithStandIns(Json::array(
        {PortAnswer("00-90-FA-1B-2C-3D",
                    "portal:198.51.100.20 does not reply; eth0:192.0.2.1, gw-10.1.2.4",
                    "10.0.0.1-10.0.0.9 10.0.0.1..10.0.0.9 slot 0:10.0.0.9 gw_10.1.2.4"),
         PortAnswer("00-90-FA-1B-2C-3E", "2001:db8:7::5-2001:db8:7::6 eth0:2001:db8:7::5",
                    "1.2.3.4.5 and v1.2.3.4 and std::bad_alloc")}));
    EXPECT_EQ(Text(told, 0, 3), "portal:198.18.0.1 does not reply; eth0:198.18.0.2, gw-198.18.0.3");
    EXPECT_EQ(Text(told, 0, 4),
              "198.18.0.4-198.18.0.5 198.18.0.4..198.18.0.5 slot 0:198.18.0.5 gw_198.18.0.3");
    EXPECT_EQ(Text(told, 1, 3), "2001:db8::6-2001:db8::7 eth0:2001:db8::6");
    EXPECT_EQ(Text(told, 1, 4), "1.2.3.4.5 and v1.2.3.4 and std::bad_alloc");
}

TEST(StandIns, ReplaceIdentifiersInARow) {
    const Json told = tavrohost::WithStandIns(
        Json::array({PortAnswer("00-90-FA-1B-2C-3D", "00-90-FA-1B-2C-3D-00-90-FA-1B-2C-3E",
                                "0x10000090fa1b2c3e"),
                     PortAnswer("10:00:00:90:FA:1B:2C:3E", "00:90:FA:1B:2C:3D:07", "")}));
    EXPECT_EQ(Text(told, 0, 3), "02-00-00-00-00-01-02-00-00-00-00-02");
    EXPECT_EQ(Text(told, 0, 4), "0x1000020000000002");
    EXPECT_EQ(Text(told, 1, 3), "02:00:00:00:00:01:07");
}

TEST(StandIns, NameAnAdapterAndAPortAsTheListingDoes) {
    const std::string adapter = "CNA 00-90-FA-1B-2C-3D";
    const std::string port = "Port of 00-90-FA-1B-2C-3D";
    Json listing = Json::object();
    listing["call"] = "GetDiscoveredAdapters";
    listing["status"] = 0;
    listing["output"] = Json::array({Json::array({adapter, Json::array({port})})});
    Json functions = Json::object();
    functions["call"] = "GetPortWWNs";
    functions["adapter"] = adapter;
    functions["port"] = port;
    functions["status"] = 0;
    functions["output"] =
        Json::array({Json::array(), Json::array({Json::array({"00-90-FA-1B-2C-3D", 1, "eth0"})})});
    const Json told = tavrohost::WithStandIns(Json::array({listing, functions}));
    EXPECT_EQ(told[0]["output"][0][0], "CNA 02-00-00-00-00-01");
    EXPECT_EQ(told[0]["output"][0][1][0], "Port of 02-00-00-00-00-01");
    EXPECT_EQ(told[1]["adapter"], told[0]["output"][0][0]);
    EXPECT_EQ(told[1]["port"], told[0]["output"][0][1][0]);
}

// A function is told by the name of its interface, its iSCSI name, or its identifier.
TEST(StandIns, OfWhatAFunctionIsToldByFollowItsForm) {
    Json functions = Json::object();
    functions["call"] = "GetPortWWNs";
    functions["adapter"] = "CNA";
    functions["port"] = "Port";
    functions["status"] = 0;
    functions["output"] =
        Json::array({Json::array(),
                     Json::array({Json::array({"00-90-FA-1B-2C-3D", 1, "eth0"}),
                                  Json::array({"00-90-FA-1B-2C-3E", 1, "iqn.1999-01.com.mars:a"}),
                                  Json::array({"00-90-FA-1B-2C-3F", 1, "00-90-FA-1B-2C-3F"})})});
    const Json told = tavrohost::WithStandIns(Json::array({functions}))[0]["output"][1];
    EXPECT_EQ(told[0][2], "interface-1");
    EXPECT_EQ(told[1][2], "iqn.2001-04.com.example:name-1");
    EXPECT_EQ(told[2][2], told[2][0]);
}

// An answer to a listing of iSNS servers.
Json IsnsAnswer(const Json& servers) {
    Json answer = Json::object();
    answer["call"] = "DoOperation";
    answer["operation"] = static_cast<std::uint32_t>(tavroapi::OperationCode::ListIsnsServers);
    answer["status"] = 0;
    answer["output"] = servers;
    return answer;
}

TEST(StandIns, ReplaceNamesInThePlaceOfAddresses) {
    const Json told = tavrohost::WithStandIns(
        Json::array({IsnsAnswer({"isns1.corp.example:3205", "192.0.2.5:3205", "DHCP", "none",
                                 "not set here", "64"}),
                     PortAnswer("00-90-FA-1B-2C-3D", "no way to isns1.corp.example", "")}));
    EXPECT_EQ(told[0]["output"],
              Json({"host-1:3205", "198.18.0.1:3205", "DHCP", "none", "not set here", "64"}));
    EXPECT_EQ(Text(told, 1, 3), "no way to host-1");
}

TEST(StandIns, ReplaceFunctionKeysOfAnyForm) {
    const Json told = tavrohost::WithStandIns(
        Json::array({PortAnswer("port A of MARS-7", "", "at port A of MARS-7"),
                     PortAnswer("0x10000090FA1B2C3D", "wwn 0x10000090FA1B2C3D", "")}));
    EXPECT_EQ(told[0]["request"], "function-1");
    EXPECT_EQ(Text(told, 0, 4), "at function-1");
    EXPECT_EQ(Text(told, 1, 3), "wwn " + told[1]["request"].get<std::string>());
    EXPECT_EQ(told[1].dump().find("90FA1B2C3D"), std::string::npos);
}

TEST(StandIns, ReplaceNamesInAnyLetterCase) {
    const Json told = tavrohost::WithStandIns(Json::array(
        {HostNameAnswer("mars"), PortAnswer("00-90-FA-1B-2C-3D", "MARS is up", "Marsupial")}));
    EXPECT_EQ(Text(told, 1, 3), "host-1 is up");
    EXPECT_EQ(Text(told, 1, 4), "Marsupial");
}

TEST(StandIns, AreNoAddressesOfTheHostHoweverSpelled) {
    const Json told = tavrohost::WithStandIns(
        Json::array({PortAnswer("00-90-FA-1B-2C-3D", "fe80::1%eth0 fe80::aaaa%eth0", ""),
                     PortAnswer("00-90-FA-1B-2C-3E", "FE80::3", "2001:DB8:0::4")}));
    EXPECT_EQ(Text(told, 0, 3), "fe80::2%interface-1 fe80::4%interface-1");
    EXPECT_EQ(Text(told, 1, 3), "fe80::5");
    EXPECT_EQ(Text(told, 1, 4), "2001:db8::6");
}

TEST(StandIns, KeepManySpellingsOfOneAddressApart) {
    std::string spellings;
    for (const char* zeros : {"", ":0", ":00", ":000", ":0000"}) {
        for (const char* more : {"", ":0", ":00", ":000"}) {
            spellings += std::string("2001:db8:7") + zeros + more + "::5 ";
        }
    }
    const Json told =
        tavrohost::WithStandIns(Json::array({PortAnswer("00-90-FA-1B-2C-3D", spellings, "")}));
    std::istringstream before(spellings);
    std::istringstream after(Text(told, 0, 3));
    std::map<std::string, std::string> standIns;
    std::set<std::string> different;
    for (std::string from, to; before >> from && after >> to;) {
        EXPECT_EQ(standIns.try_emplace(from, to).first->second, to);
        different.insert(to);
        EXPECT_EQ(tavrosim::IpAddressFrom(to), tavrosim::IpAddressFrom("2001:db8::1")) << to;
    }
    EXPECT_EQ(different.size(), standIns.size());
    EXPECT_GT(different.size(), 12U);
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

// What a library may write around such a text where it means nothing by its place.
std::vector<std::string> OddSurroundings(const std::string& text) {
    std::vector<std::string> odd{"portal:" + text, "0:" + text,        "gw-" + text,
                                 "eth7_" + text,   text + "-" + text,  "'" + text + "'",
                                 "(" + text + ")", text + ".",         text + ":",
                                 text + "/24",     "a=" + text + ";b", tavrosim::Capitals(text)};
    const std::string digits = tavrosim::NormalIdentifier(text);
    if (!digits.empty()) {
        odd.insert(odd.end(), {digits, "0x" + digits, "0X" + tavrosim::Capitals(digits)});
    }
    return odd;
}

// Short names are not looked for in other texts (see docs/tavrohost.md).
bool IsLookedFor(const std::string& text) {
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    return text.size() >= (isNumber ? 6 : 3);
}

TEST(StandIns, LeaveNoIdentifyingTextInOddSurroundings) {
    for (std::uint32_t seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        tavrosim::Host host = RandomHost(seed, Oddness::Foreseeable);
        Json answers = AnswersOf(host);
        Json refusal = Json::object();
        refusal["call"] = "GetHostName";
        refusal["status"] = 5;
        struct Case {
            std::string told;
            std::string hidden;
        };
        std::vector<Case> cases;
        const std::size_t first = answers.size();
        for (const std::string& text : IdentifyingTexts(host)) {
            if (!IsLookedFor(text)) {
                continue;
            }
            for (const std::string& odd : OddSurroundings(text)) {
                cases.push_back({odd, text});
                refusal["error"] = {{"code", 5}, {"details", odd}};
                answers.push_back(refusal);
            }
        }
        ASSERT_GT(cases.size(), 100U);
        const Json told = tavrohost::WithStandIns(answers);
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const std::string after =
                tavrosim::Capitals(told[first + i]["error"]["details"].get<std::string>());
            EXPECT_EQ(after.find(tavrosim::Capitals(cases[i].hidden)), std::string::npos)
                << cases[i].told;
            const std::string digits = tavrosim::NormalIdentifier(cases[i].hidden);
            if (!digits.empty()) {
                EXPECT_EQ(after.find(tavrosim::Capitals(digits)), std::string::npos)
                    << cases[i].told;
            }
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
