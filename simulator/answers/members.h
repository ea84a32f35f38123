#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "library/json/json.h"

namespace tavrosim {

// Whether a name is one of these, which outlive the result.
template <std::size_t Count>
auto IsOneOf(const std::array<const char*, Count>& known) {
    return [&known](std::string_view name) {
        return std::find(known.begin(), known.end(), name) != known.end();
    };
}

// Throws ShapeError unless `json` is an object without members but these.
template <std::size_t Count>
void RefuseUnknown(const tavrolib::Json& json, const std::array<const char*, Count>& known,
                   const tavrolib::Place& place) {
    RefuseUnknownMembers(json, IsOneOf(known), place);
}

// Calls `use(member, its place)` where the object has the member.
template <class Use>
void IfThere(const tavrolib::Json& object, std::string_view name, const tavrolib::Place& place,
             const Use& use) {
    const auto found = object.find(std::string(name));
    if (found != object.end()) {
        use(*found, tavrolib::Place(place, name));
    }
}

}  // namespace tavrosim
