// The published schema says what the library accepts: it is held to the member tables, and what it
// says beyond them to the check of hosts.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "library/calls/call.h"
#include "library/json/json.h"
#include "library/json/place.h"
#include "simulator/host/default_host.h"
#include "simulator/host/host_file.h"
#include "simulator/host/host_type.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

using tavrolib::Json;
using tavrolib::ShapeError;
using Names = std::set<std::string>;
using Shape = HostType::Shape;

const Json& Schema() {
    static const Json schema =
        Json::parse(tavrolib_test::Read(TAVRO_SOURCE_DIR "/docs/host.schema.json"));
    return schema;
}

const std::string DefinitionPrefix = "#/$defs/";

// What a schema refers to, else the schema itself.
const Json& Resolved(const Json& schema) {
    if (!schema.contains("$ref")) {
        return schema;
    }
    const std::string reference = schema.at("$ref").get<std::string>();
    EXPECT_EQ(reference.substr(0, DefinitionPrefix.size()), DefinitionPrefix);
    return Schema().at("$defs").at(reference.substr(DefinitionPrefix.size()));
}

Names KeysOf(const Json& object) {
    Names names;
    for (const auto& item : object.items()) {
        names.insert(item.key());
    }
    return names;
}

// Numbers that the library's check keeps in a range of their own.
const std::map<std::string, std::pair<std::int64_t, std::int64_t>> NarrowerRanges{
    {".format", {1, HostFormat}}, {".fcoeFabric.targets[].lossPercent", {0, 100}}};

// The member of a host that the tables do not have: what was captured is kept as it stands.
const std::string CapturedPart = "captured";
const Names CapturedDefinitions{"Captured", "CapturedAnswer", "ToldError"};

// Walks the member tables and the schema together.
class Comparison {
  public:
    void CompareStruct(const HostType& type, const Json& schema, const std::string& place) {
        Names members;
        Names required;
        for (const HostMember& member : type.members) {
            members.emplace(member.key);
            if (member.presence == Presence::Required) {
                required.emplace(member.key);
            }
        }
        EXPECT_EQ(schema.value("additionalProperties", Json()), Json(false)) << place;
        const Json requiredHere = schema.value("required", Json::array());
        EXPECT_EQ(requiredHere.get<Names>(), required) << place;
        EXPECT_EQ(requiredHere.size(), required.size()) << place;
        ASSERT_TRUE(schema.contains("properties")) << place;
        const Json& properties = schema.at("properties");
        if (place.empty()) {
            members.insert(CapturedPart);
        }
        EXPECT_EQ(KeysOf(properties), members) << place;
        for (const HostMember& member : type.members) {
            const std::string name(member.key);
            const std::string memberPlace = place + '.' + name;
            if (properties.contains(name)) {
                EXPECT_NE(properties.at(name).value("description", ""), "") << memberPlace;
                EXPECT_EQ(properties.at(name).value("deprecated", false),
                          member.presence == Presence::Former)
                    << memberPlace;
                Compare(*member.type, properties.at(name), memberPlace);
            }
        }
    }

    void ExpectEveryDefinitionUsed() const {
        Names definitions = definitions_;
        definitions.insert(CapturedDefinitions.begin(), CapturedDefinitions.end());
        EXPECT_EQ(KeysOf(Schema().at("$defs")), definitions);
    }

  private:
    void Compare(const HostType& type, const Json& given, const std::string& place) {
        if (given.contains("$ref")) {
            ExpectKeywords(given, {"$ref"}, place);
            definitions_.insert(
                given.at("$ref").get<std::string>().substr(DefinitionPrefix.size()));
        }
        const Json& schema = Resolved(given);
        const std::map<Shape, std::string> types{{Shape::Text, "string"},
                                                 {Shape::Truth, "boolean"},
                                                 {Shape::Number, "integer"},
                                                 {Shape::Struct, "object"},
                                                 {Shape::List, "array"}};
        EXPECT_EQ(schema.value("type", ""), types.at(type.shape)) << place;
        switch (type.shape) {
            case Shape::Text:
                ExpectKeywords(schema, {"type", "pattern", "enum"}, place);
                break;
            case Shape::Truth:
                ExpectKeywords(schema, {"type"}, place);
                break;
            case Shape::Number:
                ExpectKeywords(schema, {"type", "minimum", "maximum"}, place);
                EXPECT_EQ(schema.value("minimum", Json()), Json(LimitsAt(type, place).first))
                    << place;
                EXPECT_EQ(schema.value("maximum", Json()), Json(LimitsAt(type, place).second))
                    << place;
                break;
            case Shape::Struct:
                ExpectKeywords(schema,
                               {"type", "additionalProperties", "required", "properties", "oneOf"},
                               place);
                CompareStruct(type, schema, place);
                break;
            case Shape::List:
                CompareList(type, schema, place);
                break;
        }
    }

    void CompareList(const HostType& type, const Json& schema, const std::string& place) {
        ExpectKeywords(schema, {"type", "items", "maxItems"}, place);
        const bool isLimited = type.most < std::numeric_limits<std::size_t>::max();
        EXPECT_EQ(schema.contains("maxItems"), isLimited) << place;
        if (isLimited) {
            EXPECT_EQ(schema.value("maxItems", std::size_t{0}), type.most) << place;
        }
        ASSERT_TRUE(schema.contains("items")) << place;
        Compare(*type.element, schema.at("items"), place + "[]");
    }

    // What the number can be: what its type holds, unless the library's check allows less.
    static std::pair<std::int64_t, std::int64_t> LimitsAt(const HostType& type,
                                                          const std::string& place) {
        const auto narrower = NarrowerRanges.find(place);
        return narrower == NarrowerRanges.end() ? std::pair{type.lowest, type.highest}
                                                : narrower->second;
    }

    static void ExpectKeywords(const Json& schema, const Names& known, const std::string& place) {
        for (const std::string& keyword : KeysOf(schema)) {
            EXPECT_TRUE(keyword == "description" || keyword == "deprecated" ||
                        known.contains(keyword))
                << place << ": " << keyword;
        }
    }

    Names definitions_;
};

TEST(HostSchema, HoldsTheMembersOfTheTablesAndNothingElse) {
    EXPECT_EQ(KeysOf(Schema()), (Names{"$schema", "title", "description", "type",
                                       "additionalProperties", "required", "properties", "$defs"}));
    EXPECT_EQ(Schema().at("type"), "object");
    Comparison comparison;
    comparison.CompareStruct(HostTypeOf<Host>(), Schema(), "");
    comparison.ExpectEveryDefinitionUsed();
    for (const auto& definition : Schema().at("$defs").items()) {
        EXPECT_NE(definition.value().value("description", ""), "") << definition.key();
    }
}

// Calls `use(value, schema, place)` for every text and number of the host.
void ForEachScalar(
    Json& value, const Json& given, const std::string& place,
    const std::function<void(Json&, const Json& schema, const std::string& place)>& use) {
    const Json& schema = Resolved(given);
    if (value.is_object()) {
        for (auto& item : value.items()) {
            ForEachScalar(item.value(), schema.at("properties").at(item.key()),
                          place + '.' + item.key(), use);
        }
    } else if (value.is_array()) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            ForEachScalar(value[i], schema.at("items"), place + '[' + std::to_string(i) + ']', use);
        }
    } else if (!value.is_boolean()) {
        use(value, schema, place);
    }
}

bool IsAccepted(const Json& host) {
    try {
        HostFromText(host.dump());
        return true;
    } catch (const ShapeError&) {
        return false;
    }
}

// The built-in host, and in it every member that is held to more than its type.
Json HostOfCheckedMembers() {
    Json host = Json::parse(DefaultHostText());
    host["fcoeFabric"]["targets"][0]["initiators"] = {"10:00:02:00:5E:10:00:04"};
    host["fcoeFabric"]["targets"][0]["lossPercent"] = 100;
    for (Json& function : host["adapters"][0]["ports"][0]["functions"]) {
        if (function.contains("fcoe")) {
            function["fcoe"]["virtualPorts"] = Json::array({{{"portWwn", "20:01:02:00:5E:10:00:04"},
                                                             {"nodeWwn", "20:00:02:00:5E:10:00:04"},
                                                             {"fcid", "010401"}}});
        }
    }
    return host;
}

Names PlacesOfAPattern() {
    Names places;
    Json host = HostOfCheckedMembers();
    ForEachScalar(host, Schema(), "", [&](Json&, const Json& schema, const std::string& place) {
        if (schema.contains("pattern")) {
            places.insert(place.substr(place.find_last_of("].") + 1));
        }
    });
    return places;
}

TEST(HostSchema, ATextIsHeldToAPatternWhereTheLibraryChecksIt) {
    EXPECT_EQ(PlacesOfAPattern(),
              (Names{"", "mac", "portWwn", "nodeWwn", "fcid", "targetPortWwn"}));
    Json host = HostOfCheckedMembers();
    ASSERT_TRUE(IsAccepted(host));
    ForEachScalar(
        host, Schema(), "", [&](Json& value, const Json& schema, const std::string& place) {
            if (value.is_string()) {
                const std::string before = value.get<std::string>();
                value = "?";
                EXPECT_EQ(IsAccepted(host), !schema.contains("pattern") && !schema.contains("enum"))
                    << place;
                value = before;
            }
        });
}

TEST(HostSchema, ANumberOutsideTheRangeIsRefused) {
    Json host = HostOfCheckedMembers();
    ForEachScalar(host, Schema(), "",
                  [&](Json& value, const Json& schema, const std::string& place) {
                      if (value.is_number()) {
                          const Json before = value;
                          value = schema.at("minimum").get<std::int64_t>() - 1;
                          EXPECT_FALSE(IsAccepted(host)) << place;
                          value = schema.at("maximum").get<std::uint64_t>() + 1;
                          EXPECT_FALSE(IsAccepted(host)) << place;
                          value = before;
                      }
                  });
}

TEST(HostSchema, AFunctionIsOfExactlyOneKind) {
    EXPECT_EQ(Schema().at("$defs").at("Function").at("oneOf"),
              Json::parse(R"([{"required": ["ethernet"]}, {"required": ["iscsi"]},
                              {"required": ["fcoe"]}])"));
    Json host = HostOfCheckedMembers();
    Json& function = host["adapters"][0]["ports"][0]["functions"][0];
    ASSERT_TRUE(function.contains("ethernet"));
    function["iscsi"] = Json::object();
    EXPECT_FALSE(IsAccepted(host));
    function.erase("ethernet");
    EXPECT_TRUE(IsAccepted(host));
    function.erase("iscsi");
    EXPECT_FALSE(IsAccepted(host));
}

TEST(HostSchema, TheFormatIsTheOneThatIsWritten) {
    const Json& format = Schema().at("properties").at("format");
    EXPECT_EQ(format.at("minimum"), 1);
    EXPECT_EQ(format.at("maximum"), HostFormat);
    EXPECT_EQ(Json::parse(TextFromHost(Host())).at("format"), HostFormat);
}

// A host that captured these answers of itself.
Json HostThatCaptured(const Json& answers) {
    const Json made = Json::parse(R"({"name": "h", "adapters": []})");
    Json host = made;
    host[CapturedPart]["answers"] = answers;
    host[CapturedPart]["host"] = made;
    return host;
}

TEST(HostSchema, HoldsTheCallsThatCanBeCaptured) {
    const Json calls =
        Schema().at("$defs").at("CapturedAnswer").at("properties").at("call").at("enum");
    for (const auto entryPoint :
         {tavrolib::EntryPoint::Initialize, tavrolib::EntryPoint::Uninitialize,
          tavrolib::EntryPoint::DoOperation, tavrolib::EntryPoint::GetLocalizeMessage,
          tavrolib::EntryPoint::GetLastErrorMessage, tavrolib::EntryPoint::GetHostName,
          tavrolib::EntryPoint::GetDiscoveredAdapters, tavrolib::EntryPoint::GetPortWWNs,
          tavrolib::EntryPoint::GetPartitionState, tavrolib::EntryPoint::GetAdapterType,
          tavrolib::EntryPoint::GetAdapterPortNumber}) {
        const std::string name(RowOf(entryPoint).name);
        const bool isListed = std::find(calls.begin(), calls.end(), Json(name)) != calls.end();
        Json answer{{"call", name}};
        if (entryPoint == tavrolib::EntryPoint::DoOperation) {
            answer["operation"] = 70;
        }
        EXPECT_EQ(IsAccepted(HostThatCaptured(Json::array({answer}))), isListed) << name;
    }
}

TEST(HostSchema, HoldsTheMembersOfACapturedAnswer) {
    const Json& properties = Schema().at("$defs").at("CapturedAnswer").at("properties");
    const Json query{{"call", "GetPortWWNs"}, {"status", 5},   {"adapter", "a"},
                     {"port", "p"},           {"request", ""}, {"output", Json::array()},
                     {"error", {{"code", 5}}}};
    const Json operation{{"call", "DoOperation"}, {"operation", 8}};
    const Json withInput{{"call", "DoOperation"}, {"operation", 10}, {"input", "t"}};
    EXPECT_TRUE(IsAccepted(HostThatCaptured(Json::array({query, operation, withInput}))));
    Names members = KeysOf(query);
    members.merge(KeysOf(withInput));
    EXPECT_EQ(KeysOf(properties), members);
    for (const char* const other : {"times", "result", "comment", "debug", "locale", "calls"}) {
        Json answer = operation;
        answer[other] = 1;
        EXPECT_FALSE(IsAccepted(HostThatCaptured(Json::array({answer})))) << other;
    }
}

TEST(HostSchema, HoldsTheMembersOfACapturedError) {
    const Json& properties = Schema().at("$defs").at("ToldError").at("properties");
    Json error = Json::object();
    for (const std::string& name : KeysOf(properties)) {
        error[name] = properties.at(name).at("type") == "string" ? Json("text") : Json(5);
    }
    const Json answer{{"call", "GetHostName"}, {"status", 5}, {"error", error}};
    EXPECT_TRUE(IsAccepted(HostThatCaptured(Json::array({answer}))));
    EXPECT_EQ(error.size(), tavroapi::FieldCount<tavroapi::ErrorRecord>());
}

}  // namespace
}  // namespace tavrosim
