#include "library/json/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

namespace tavrolib {
namespace {

// What the parser says after its own "parse error at line 1, column 2: ".
std::string ReasonOf(const nlohmann::json::parse_error& error) {
    const std::string text = error.what();
    const std::size_t column = text.find("column ");
    const std::size_t start = text.find(": ", column == std::string::npos ? 0 : column);
    return start == std::string::npos ? text : text.substr(start + 2);
}

std::string LineAndColumn(std::string_view text, std::size_t byte) {
    const std::string_view before = text.substr(0, std::min(byte == 0 ? 0 : byte - 1, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineStart = before.rfind('\n');
    const std::size_t column =
        lineStart == std::string_view::npos ? before.size() + 1 : before.size() - lineStart;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::string KindOf(const Json& json) {
    switch (json.type()) {
        case Json::value_t::null:
            return "null";
        case Json::value_t::boolean:
            return "true or false";
        case Json::value_t::string:
            return "a text";
        case Json::value_t::array:
            return "an array";
        case Json::value_t::object:
            return "an object";
        default:
            return "a number";
    }
}

[[noreturn]] void Refuse(const std::string& wanted, const Json& json, const Place& place) {
    throw ShapeError(place, wanted + " is wanted, not " + KindOf(json));
}

}  // namespace

Json ParseJson(std::string_view text) {
    std::vector<std::set<std::string>> names;
    const auto refuseRepeatedNames = [&names](int /*depth*/, Json::parse_event_t event,
                                              Json& value) {
        if (event == Json::parse_event_t::object_start) {
            names.emplace_back();
        } else if (event == Json::parse_event_t::object_end) {
            names.pop_back();
        } else if (event == Json::parse_event_t::key &&
                   !names.back().insert(value.get_ref<const std::string&>()).second) {
            throw ShapeError("\"" + value.get_ref<const std::string&>() +
                             "\" stands twice in one object");
        }
        return true;
    };
    try {
        return Json::parse(text.begin(), text.end(), refuseRepeatedNames);
    } catch (const nlohmann::json::parse_error& error) {
        throw ShapeError(LineAndColumn(text, error.byte) + ": " + ReasonOf(error));
    } catch (const nlohmann::json::exception& error) {
        throw ShapeError(error.what());
    }
}

std::string LineOf(const Json& json) {
    return json.dump();
}

const std::string& TextAt(const Json& json, const Place& place) {
    if (!json.is_string()) {
        Refuse("a text", json, place);
    }
    return json.get_ref<const std::string&>();
}

std::int64_t NumberAt(const Json& json, std::int64_t lowest, std::int64_t highest,
                      const Place& place) {
    if (!json.is_number()) {
        Refuse("a number", json, place);
    }
    const bool tooLarge = json.is_number_unsigned() &&
                          json.get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX);
    if (!json.is_number_integer() || tooLarge || json.get<std::int64_t>() < lowest ||
        json.get<std::int64_t>() > highest) {
        throw ShapeError(place, "a whole number from " + std::to_string(lowest) + " to " +
                                    std::to_string(highest) + " is wanted, not " + json.dump());
    }
    return json.get<std::int64_t>();
}

std::size_t SizeAt(const Json& json, std::size_t most, const Place& place) {
    if (!json.is_array()) {
        Refuse("an array", json, place);
    }
    if (json.size() > most) {
        throw ShapeError(place, "at most " + std::to_string(most) + " elements are wanted, not " +
                                    std::to_string(json.size()));
    }
    return json.size();
}

void WantObject(const Json& json, const Place& place) {
    if (!json.is_object()) {
        Refuse("an object", json, place);
    }
}

bool TruthAt(const Json& json, const Place& place) {
    if (!json.is_boolean()) {
        Refuse("true or false", json, place);
    }
    return json.get<bool>();
}

}  // namespace tavrolib
