#include "twin/diff/usual.h"

#include <map>
#include <nlohmann/json.hpp>

#include "simulator/host/host.h"
#include "simulator/host/host_json.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using tavrosim::HostType;
using UsualValues = std::map<const HostType*, Json>;

// Takes in the type of a new value, and those of all that it can hold.
void Collect(const HostType& type, void* value, UsualValues& usual) {
    if (type.shape == HostType::Shape::List) {
        if (void* const first = type.resize(value, 1)) {
            Collect(*type.element, first, usual);
        }
        return;
    }
    if (type.shape != HostType::Shape::Struct ||
        !usual.try_emplace(&type, tavrosim::HostValueToJson(type, value)).second) {
        return;
    }
    for (const tavrosim::HostMember& member : type.members) {
        Collect(*member.type, member.make(value), usual);
    }
}

UsualValues CollectAll() {
    UsualValues usual;
    tavrosim::Host host;
    Collect(tavrosim::HostTypeOf<tavrosim::Host>(), &host, usual);
    return usual;
}

}  // namespace

const Json& UsualOf(const HostType& type) {
    static const UsualValues Usual = CollectAll();
    static const Json Nothing;
    const auto found = Usual.find(&type);
    return found == Usual.end() ? Nothing : found->second;
}

}  // namespace tavrohost
