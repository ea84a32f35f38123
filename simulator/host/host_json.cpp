#include "simulator/host/host_json.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "library/text/text.h"

namespace tavrosim {
namespace {

using tavrolib::BytesFromUtf8;
using tavrolib::Findings;
using tavrolib::Json;
using tavrolib::Place;
using tavrolib::Utf8FromBytes;
using Shape = HostType::Shape;

Json StructToJson(const HostType& type, const void* owner) {
    Json object = Json::object();
    for (const HostMember& member : type.members) {
        const void* const value = member.find(owner);
        if (value != nullptr && member.presence != Presence::Former) {
            object[std::string(member.key)] = HostValueToJson(*member.type, value);
        }
    }
    return object;
}

Json ListToJson(const HostType& type, const void* list) {
    Json array = Json::array();
    const char* element = static_cast<const char*>(type.first(list));
    for (std::size_t i = 0; i < type.size(list); ++i) {
        array.push_back(HostValueToJson(*type.element, element));
        element += type.elementSize;
    }
    return array;
}

// A value may stand under its key or a former one, not under both.
void CheckIsStatedOnce(const HostType& type, const Json& json, const void* owner,
                       const Place& place, Findings& findings) {
    std::map<const void*, std::string_view> keys;
    for (const HostMember& member : type.members) {
        if (!json.contains(std::string(member.key))) {
            continue;
        }
        const auto [other, isNew] = keys.try_emplace(member.find(owner), member.key);
        if (!isNew) {
            findings.Add(Place(place, member.key),
                         "this is \"" + std::string(other->second) + "\", which is here too");
        }
    }
}

void StructFromJson(const HostType& type, const Json& json, void* owner, const Place& place,
                    std::string_view foreign, Findings& findings) {
    if (!findings.PassReading(place, [&] { WantObject(json, place); })) {
        return;
    }
    for (const HostMember& member : type.members) {
        const Place at(place, member.key);
        const auto found = json.find(std::string(member.key));
        if (found != json.end()) {
            HostValueFromJson(*member.type, *found, member.make(owner), at, {}, findings);
        } else if (member.presence == Presence::Required) {
            findings.Add(place, "\"" + std::string(member.key) + "\" is missing");
            findings.MarkUnreadable(at);
        }
    }
    const auto isKnown = [&](std::string_view name) {
        return (!foreign.empty() && name == foreign) ||
               std::any_of(type.members.begin(), type.members.end(),
                           [name](const HostMember& member) { return member.key == name; });
    };
    CheckMembers(json, isKnown, place, findings);
    CheckIsStatedOnce(type, json, owner, place, findings);
}

void ListFromJson(const HostType& type, const Json& json, void* list, const Place& place,
                  Findings& findings) {
    std::size_t given = 0;
    if (!findings.PassReading(place, [&] { given = SizeAt(json, type.most, place); })) {
        return;
    }
    char* element = static_cast<char*>(type.resize(list, given));
    for (std::size_t i = 0; i < given; ++i) {
        HostValueFromJson(*type.element, json[i], element, Place(place, i), {}, findings);
        element += type.elementSize;
    }
}

void LeafFromJson(const HostType& type, const Json& json, void* value, const Place& place) {
    switch (type.shape) {
        case Shape::Text:
            *static_cast<std::string*>(value) = BytesFromUtf8(TextAt(json, place));
            break;
        case Shape::Truth:
            *static_cast<bool*>(value) = TruthAt(json, place);
            break;
        default:
            type.setNumber(value, NumberAt(json, type.lowest, type.highest, place));
    }
}

}  // namespace

Json HostValueToJson(const HostType& type, const void* value) {
    switch (type.shape) {
        case Shape::Text:
            return Utf8FromBytes(*static_cast<const std::string*>(value));
        case Shape::Truth:
            return *static_cast<const bool*>(value);
        case Shape::Number:
            return type.isSigned ? Json(static_cast<std::int64_t>(type.number(value)))
                                 : Json(type.number(value));
        case Shape::Struct:
            return StructToJson(type, value);
        case Shape::List:
            break;
    }
    return ListToJson(type, value);
}

void HostValueFromJson(const HostType& type, const Json& json, void* value, const Place& place,
                       std::string_view foreign) {
    Findings first;
    HostValueFromJson(type, json, value, place, foreign, first);
}

void HostValueFromJson(const HostType& type, const Json& json, void* value, const Place& place,
                       std::string_view foreign, Findings& findings) {
    switch (type.shape) {
        case Shape::Struct:
            StructFromJson(type, json, value, place, foreign, findings);
            break;
        case Shape::List:
            ListFromJson(type, json, value, place, findings);
            break;
        default:
            findings.PassReading(place, [&] { LeafFromJson(type, json, value, place); });
    }
}

}  // namespace tavrosim
