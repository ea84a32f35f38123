#include "simulator/host/host_file.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "library/json/place.h"
#include "simulator/host/default_host.h"
#include "simulator/host/lookup.h"
#include "simulator/script/script.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

using tavrolib::Json;
using tavrolib::ShapeError;

// A host with one adapter, one port and the given functions.
std::string HostWith(const std::string& functions) {
    return R"({"name": "h", "adapters": [{"name": "A", "number": 1, "type": "CNA", "partitionState": 1,)"
           R"( "ports": [{"name": "Port 1", "functions": [)" +
           functions + "]}]}]}";
}

std::string Refusal(const std::string& text) {
    try {
        HostFromText(text);
        return "accepted";
    } catch (const ShapeError& error) {
        return error.what();
    }
}

TEST(HostFile, DefaultHostHoldsEveryKind) {
    const Host host = DefaultHost();
    ASSERT_EQ(host.adapters.size(), 3U);
    EXPECT_NE(host.adapters[0].name.find("4610K"), std::string::npos);
    EXPECT_EQ(host.adapters[0].ports.size(), 2U);
    for (const Port& port : host.adapters[0].ports) {
        std::set<std::string> kinds;
        for (const Function& function : port.functions) {
            kinds.insert(function.ethernet ? "ethernet" : function.iscsi ? "iscsi" : "fcoe");
        }
        EXPECT_EQ(kinds, (std::set<std::string>{"ethernet", "iscsi", "fcoe"}));
    }
    EXPECT_NE(host.adapters[1].name.find("4910K"), std::string::npos);
    EXPECT_EQ(host.adapters[1].ports.size(), 4U);
    for (const char* supported : {"4610K", "4910K", "3910K"}) {
        EXPECT_EQ(host.adapters[2].name.find(supported), std::string::npos);
    }
    std::set<std::uint32_t> partitionStates;
    std::set<std::string> types;
    for (const Adapter& adapter : host.adapters) {
        partitionStates.insert(adapter.partitionState);
        types.insert(adapter.type);
        EXPECT_NE(adapter.state, "6");
    }
    EXPECT_EQ(partitionStates, (std::set<std::uint32_t>{1, 2, 3}));
    EXPECT_EQ(types, (std::set<std::string>{"CNA", "Ethernet"}));
}

TEST(HostFile, FunctionNumbersAreInterleavedOverThePorts) {
    const Host host = DefaultHost();
    for (const Adapter& adapter : host.adapters) {
        for (std::size_t port = 0; port < adapter.ports.size(); ++port) {
            for (const Function& function : adapter.ports[port].functions) {
                EXPECT_EQ(function.number % adapter.ports.size(), port) << adapter.name;
            }
        }
    }
}

TEST(HostFile, WrittenHostIsReadAgainAsItWas) {
    const std::string text = TextFromHost(DefaultHost());
    EXPECT_EQ(TextFromHost(HostFromText(text)), text);
}

// The guide's blocks of JSON, in their order.
std::vector<std::string> BlocksOfTheGuide() {
    const std::string guide = tavrolib_test::Read(TAVRO_SOURCE_DIR "/docs/simulator.md");
    const std::string opening = "```json\n";
    std::vector<std::string> blocks;
    for (std::size_t start = guide.find(opening); start != std::string::npos;
         start = guide.find(opening, start)) {
        start += opening.size();
        blocks.push_back(guide.substr(start, guide.find("```", start) - start));
    }
    return blocks;
}

TEST(HostFile, ExamplesOfTheGuideAreAccepted) {
    const auto blocks = BlocksOfTheGuide();
    ASSERT_EQ(blocks.size(), 2U);
    EXPECT_EQ(HostFromText(blocks[0]).adapters.size(), 1U);
    EXPECT_NO_THROW(Script::FromText(blocks[1]));
}

// The texts of `whole` without one member each, for all members of `part` and what stands in it.
void AddTextsWithoutAMember(const Json& whole, Json& part, std::vector<std::string>& texts) {
    for (std::size_t i = 0; part.is_object() && i < part.size(); ++i) {
        const Json before = part;
        part.erase(std::next(part.begin(), static_cast<std::ptrdiff_t>(i)));
        texts.push_back(whole.dump());
        part = before;
    }
    for (Json& inner : part) {
        if (inner.is_structured()) {
            AddTextsWithoutAMember(whole, inner, texts);
        }
    }
}

TEST(HostFile, NothingOfTheGuidesSmallHostMayBeLeftOut) {
    Json host = Json::parse(BlocksOfTheGuide().at(0));
    std::vector<std::string> texts;
    AddTextsWithoutAMember(host, host, texts);
    EXPECT_EQ(texts.size(), 2U + 5U + 2U + 3U * 3U + 1U + 2U);
    for (const std::string& text : texts) {
        EXPECT_NE(Refusal(text), "accepted") << text;
    }
}

TEST(HostFile, BytesOfAnyKindSurvive) {
    Host host = DefaultHost();
    host.name = "h\xE9\x03";
    EXPECT_EQ(HostFromText(TextFromHost(host)).name, host.name);
}

TEST(HostFile, RefusalsNameThePlace) {
    const std::string function =
        R"({"number": 0, "mac": "02-00-5E-00-00-01", "ethernet": {"interface": "e"}})";
    EXPECT_EQ(Refusal(HostWith(function)), "accepted");
    EXPECT_EQ(Refusal("[]"), "an object is wanted, not an array");
    EXPECT_EQ(Refusal("{}"), "\"name\" is missing");
    EXPECT_EQ(Refusal(R"({"name": "h", "adapters": [], "adaptors": []})"), "member 3 is unknown");
    EXPECT_EQ(Refusal(HostWith(function +
                               R"(, {"number": 1, "mac": 5, "ethernet": {"interface": "e"}})")),
              "adapters[0].ports[0].functions[1].mac: a text is wanted, not a number");
    EXPECT_EQ(Refusal(HostWith(R"({"number": 0, "mac": "02-00-5E-00-00-01", "ethernet": {}})")),
              "adapters[0].ports[0].functions[0].ethernet: \"interface\" is missing");
    EXPECT_EQ(Refusal(HostWith(R"({"number": 0, "mac": "02-00-5E-00-00-01"})")),
              "adapters[0].ports[0].functions[0]: exactly one of \"ethernet\", \"iscsi\" and "
              "\"fcoe\" is wanted");
    EXPECT_EQ(
        Refusal(HostWith(R"({"number": 0, "mac": "02-00-5E", "ethernet": {"interface": "e"}})")),
        "adapters[0].ports[0].functions[0].mac: a MAC of 12 hexadecimal digits is wanted");
    EXPECT_EQ(Refusal(HostWith(function + "," + function)),
              "adapters[0].ports[0].functions[1].mac: another Ethernet function has this MAC");
    EXPECT_EQ(Refusal("{\n\"name\": }"), "line 2, column 9: a syntax error");
}

TEST(HostFile, ANewerFormatIsRefusedBeforeAllElse) {
    EXPECT_EQ(Refusal(R"({"format": 2, "title": "h", "cards": []})"),
              "the file has format 2; this library reads format 1");
    EXPECT_EQ(Refusal(R"({"format": 4294967295})"),
              "the file has format 4294967295; this library reads format 1");
    EXPECT_EQ(Refusal(R"({"format": 0, "name": "h", "adapters": []})").substr(0, 38),
              "format: a whole number from 1 to 42949");
    EXPECT_EQ(Refusal(R"({"format": "1", "name": "h", "adapters": []})"),
              "format: a number is wanted, not a text");
}

TEST(HostFile, AFileWithoutAFormatHasTheFirst) {
    EXPECT_EQ(HostFromText(R"({"name": "h", "adapters": []})").format, 1U);
    EXPECT_EQ(HostFromText(R"({"format": 1, "name": "h", "adapters": []})").format, 1U);
    const Json written = Json::parse(TextFromHost(DefaultHost()));
    EXPECT_EQ(written.begin().key(), "format");
    EXPECT_EQ(written.front(), 1);
}

// Functions with these parts, all with one MAC and with that port WWN.
std::string FunctionsOfOneMac(const std::vector<std::string>& parts) {
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        text += (i == 0 ? "" : ",") + std::string(R"({"number": )") + std::to_string(i) +
                R"(, "mac": "02-00-5E-00-00-01", )" + parts[i] + "}";
    }
    return HostWith(text);
}

constexpr const char* AnEthernetPart = R"("ethernet": {"interface": "e"})";
constexpr const char* AnIscsiPart = R"("iscsi": {})";
constexpr const char* AnFcoePart =
    R"("fcoe": {"portWwn": "10:00:02:00:5E:00:00:01", "nodeWwn": "20:00:02:00:5E:00:00:01"})";

TEST(HostFile, FunctionsOfDifferentKindsMayShareAMac) {
    EXPECT_EQ(Refusal(FunctionsOfOneMac({AnEthernetPart, AnIscsiPart, AnFcoePart})), "accepted");
    EXPECT_EQ(Refusal(FunctionsOfOneMac({AnEthernetPart, AnIscsiPart, AnIscsiPart})),
              "adapters[0].ports[0].functions[2].mac: another iSCSI function has this MAC");
    EXPECT_EQ(Refusal(FunctionsOfOneMac({AnFcoePart, AnEthernetPart, AnFcoePart})),
              "adapters[0].ports[0].functions[2].mac: another FCoE function has this MAC");
}

TEST(HostFile, TwoAdaptersOfOneNameAreRefused) {
    Host host = DefaultHost();
    host.adapters[2].name = host.adapters[0].name;
    EXPECT_EQ(Refusal(TextFromHost(host)), "adapters[2].name: another adapter has this name");
}

TEST(Lookup, CaseAndSeparatorsDoNotMatter) {
    const Host host = DefaultHost();
    for (const char* mac : {"02-00-5E-10-00-02", "02:00:5e:10:00:02", "02005e100002"}) {
        const auto found = FindFunctionWith<IscsiPart>(host, mac);
        ASSERT_TRUE(found) << mac;
        EXPECT_EQ(found.function->number, 2U);
        EXPECT_EQ(found.port->name, "Port 1");
        EXPECT_EQ(found.adapter->number, 0U);
    }
    EXPECT_TRUE(FindFunctionWith<FcoePart>(host, "10-00-02-00-5e-10-00-04"));
}

TEST(Lookup, KindsAreToldApart) {
    const Host host = DefaultHost();
    EXPECT_TRUE(FindFunctionWith<EthernetPart>(host, "02-00-5E-10-00-00"));
    EXPECT_FALSE(FindFunctionWith<IscsiPart>(host, "02-00-5E-10-00-00"));
    EXPECT_FALSE(FindFunctionWith<EthernetPart>(host, "02-00-5E-10-00-02"));
    EXPECT_FALSE(FindFunctionWith<FcoePart>(host, "02-00-5E-10-00-04"));
    EXPECT_TRUE(FindFunction(host, "02-00-5E-10-00-04"));
}

TEST(Lookup, OfFunctionsThatShareAMacTheWantedKindIsFound) {
    const Host host = HostFromText(FunctionsOfOneMac({AnIscsiPart, AnEthernetPart, AnFcoePart}));
    const char* const mac = "02-00-5e-00-00-01";
    EXPECT_EQ(FindFunctionWith<IscsiPart>(host, mac).function->number, 0U);
    EXPECT_EQ(FindFunctionWith<EthernetPart>(host, mac).function->number, 1U);
    EXPECT_EQ(FindFunctionWith<FcoePart>(host, "10000200:5E000001").function->number, 2U);
    EXPECT_FALSE(FindFunctionWith<FcoePart>(host, mac));
    EXPECT_EQ(FindFunction(host, mac).function->number, 0U) << "the first in the file";
}

TEST(Lookup, WhatIsNoIdentifierFindsNothing) {
    const Host host = DefaultHost();
    for (const char* text :
         {"", "-", "02-00-5E-10-00-0", "02-00-5E-10-00-0G", "02 00 5E 10 00 02", "Port 1"}) {
        EXPECT_FALSE(FindFunction(host, text)) << text;
    }
}

}  // namespace
}  // namespace tavrosim
