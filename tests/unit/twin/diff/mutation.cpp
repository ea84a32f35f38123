#include "tests/unit/twin/diff/mutation.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "simulator/host/host_json.h"
#include "twin/diff/identity.h"
#include "twin/diff/usual.h"

namespace tavrohost_test {
namespace {

using tavrolib::Json;
using tavrosim::HostMember;
using tavrosim::HostType;
using Shape = HostType::Shape;

constexpr const char* Texts[] = {
    "",           "Yes",       "02-00-5E-10-00-02",      "02:00:5e:10:00:02",
    "192.0.2.20", "two words", "10:00:02:00:5E:10:00:04"};

std::size_t Below(std::size_t limit, std::mt19937& random) {
    return random() % limit;
}

void Mutate(const HostType& type, Json& value, std::mt19937& random);

Json NewValue(const HostType& type, std::mt19937& random) {
    if (type.shape == Shape::Struct) {
        Json value = tavrohost::UsualOf(type);
        Mutate(type, value, random);
        return value;
    }
    if (type.shape == Shape::List) {
        return Json::array();
    }
    if (type.shape == Shape::Number) {
        return Below(100, random);
    }
    return Texts[Below(std::size(Texts), random)];
}

void MutateStruct(const HostType& type, Json& value, std::mt19937& random) {
    const HostMember& member = type.members[Below(type.members.size(), random)];
    const std::string key(member.key);
    if (member.presence == tavrosim::Presence::Former) {
        return;
    }
    const bool isOptional = !tavrohost::UsualOf(type).contains(key);
    if (tavrohost::IsSecretMember(key)) {
        value[key] = SecretStart + std::to_string(Below(1000, random));
    } else if (!value.contains(key)) {
        value[key] = NewValue(*member.type, random);
    } else if (isOptional && Below(3, random) == 0) {
        value.erase(key);
    } else {
        Mutate(*member.type, value[key], random);
    }
}

void MutateList(const HostType& type, Json& list, std::mt19937& random) {
    const bool canGrow = type.most == std::numeric_limits<std::size_t>::max();
    const std::size_t choice = canGrow ? Below(8, random) : 0;
    const auto any = [&] { return static_cast<std::ptrdiff_t>(Below(list.size(), random)); };
    if (choice == 1 || (list.empty() && canGrow)) {
        list.push_back(NewValue(*type.element, random));
    } else if (list.empty()) {
        return;
    } else if (choice == 2) {
        list.insert(list.begin() + any(), list[Below(list.size(), random)]);
    } else if (choice == 3) {
        list.erase(list.begin() + any());
    } else if (choice == 4) {
        std::shuffle(list.begin(), list.end(), random);
    } else {
        Mutate(*type.element, list[Below(list.size(), random)], random);
    }
}

void Mutate(const HostType& type, Json& value, std::mt19937& random) {
    if (type.shape == Shape::Struct) {
        MutateStruct(type, value, random);
    } else if (type.shape == Shape::List) {
        MutateList(type, value, random);
    } else {
        value = NewValue(type, random);
    }
}

}  // namespace

Json JsonOf(const tavrosim::Host& host) {
    return tavrosim::HostValueToJson(tavrosim::HostTypeOf<tavrosim::Host>(), &host);
}

tavrosim::Host Mutated(const tavrosim::Host& host, int count, std::mt19937& random) {
    const HostType& type = tavrosim::HostTypeOf<tavrosim::Host>();
    Json json = JsonOf(host);
    for (int change = 0; change < count; ++change) {
        Mutate(type, json, random);
    }
    tavrosim::Host mutated;
    tavrosim::HostValueFromJson(type, json, &mutated, tavrolib::Place());
    return mutated;
}

}  // namespace tavrohost_test
