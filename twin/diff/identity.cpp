#include "twin/diff/identity.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>
#include <vector>

#include "simulator/host/host.h"
#include "simulator/host/lookup.h"

namespace tavrohost {
namespace {

using tavrosim::HostTypeOf;

constexpr std::string_view SecretMembers[] = {"targetSecret", "initiatorSecret", "chapSecret"};
constexpr std::string_view CounterMembers[] = {"statistics", "lastSessionId"};

// The members that tell one element of a list from another.
struct Identity {
    const HostType* element = nullptr;
    std::array<std::string_view, 2> members;  // an empty one is none
};

constexpr Identity Identities[] = {
    {&HostTypeOf<tavrosim::Adapter>(), {"name"}},
    {&HostTypeOf<tavrosim::Port>(), {"name"}},
    {&HostTypeOf<tavrosim::ReachableAddress>(), {"address"}},
    {&HostTypeOf<tavrosim::IscsiPortal>(), {"address", "port"}},
    {&HostTypeOf<tavrosim::KnownPortal>(), {"address", "port"}},
    {&HostTypeOf<tavrosim::KnownTarget>(), {"name"}},
    {&HostTypeOf<tavrosim::IscsiSession>(), {"id"}},
    {&HostTypeOf<tavrosim::NetworkTarget>(), {"name"}},
    {&HostTypeOf<tavrosim::NetworkLun>(), {"number"}},
    {&HostTypeOf<tavrosim::FabricTarget>(), {"portWwn"}},
    {&HostTypeOf<tavrosim::FabricLun>(), {"number"}},
    {&HostTypeOf<tavrosim::FcoeBinding>(), {"targetPortWwn"}},
    {&HostTypeOf<tavrosim::VirtualPort>(), {"portWwn"}},
};

std::string TextOfLeaf(const Json& value) {
    return value.is_string() ? value.get_ref<const std::string&>() : tavrolib::LineOf(value);
}

std::string NameOfFunction(const Json& function) {
    const auto fcoe = function.find("fcoe");
    if (fcoe != function.end()) {
        return "FCoE " + TextOfLeaf(fcoe->at("portWwn"));
    }
    return (function.contains("iscsi") ? "iSCSI " : "Ethernet ") + TextOfLeaf(function.at("mac"));
}

// However an identifier is written, it is the same one.
std::string Normal(const std::string& text) {
    const std::size_t lastWord = text.rfind(' ') + 1;  // a function's kind comes before
    const std::string normal = tavrosim::NormalIdentifier(text.substr(lastWord));
    return normal.empty() ? text : text.substr(0, lastWord) + normal;
}

using Origins = ListOrigin;

// The n-th element of an identity is the n-th of it before.
void MatchByName(const HostType& element, const Json& before, const Json& after,
                 std::vector<bool>& used, Origins& origin) {
    std::map<std::string, std::vector<std::size_t>> places;
    for (std::size_t index = before.size(); index > 0; --index) {
        if (!used[index - 1]) {
            places[Normal(NameOfElement(element, before[index - 1]))].push_back(index - 1);
        }
    }
    for (std::size_t index = 0; index < after.size(); ++index) {
        if (origin[index]) {
            continue;
        }
        const auto found = places.find(Normal(NameOfElement(element, after[index])));
        if (found != places.end() && !found->second.empty()) {
            origin[index] = found->second.back();
            found->second.pop_back();
        }
    }
}

std::set<std::string> MacsOf(const Json& adapter) {
    std::set<std::string> macs;
    for (const Json& port : adapter.at("ports")) {
        for (const Json& function : port.at("functions")) {
            macs.insert(Normal(TextOfLeaf(function.at("mac"))));
        }
    }
    return macs;
}

// Those that have the most MACs in common belong together; of equals those of one name, then the
// first ones.
void MatchByMacs(const Json& before, const Json& after, std::vector<bool>& used, Origins& origin) {
    std::map<std::string, std::vector<std::size_t>> places;
    for (std::size_t index = 0; index < before.size(); ++index) {
        for (const std::string& mac : MacsOf(before[index])) {
            places[mac].push_back(index);
        }
    }
    using Pair = std::tuple<std::int64_t, bool, std::size_t, std::size_t>;
    std::vector<Pair> pairs;
    for (std::size_t index = 0; index < after.size(); ++index) {
        std::map<std::size_t, std::int64_t> shared;
        for (const std::string& mac : MacsOf(after[index])) {
            const auto found = places.find(mac);
            if (found != places.end()) {
                for (const std::size_t place : found->second) {
                    ++shared[place];
                }
            }
        }
        for (const auto& [place, count] : shared) {
            const bool isRenamed = before[place].at("name") != after[index].at("name");
            pairs.emplace_back(-count, isRenamed, index, place);
        }
    }
    std::ranges::sort(pairs);
    for (const auto& [count, isRenamed, index, place] : pairs) {
        if (!origin[index] && !used[place]) {
            origin[index] = place;
            used[place] = true;
        }
    }
}

}  // namespace

bool IsSecretMember(std::string_view key) {
    return std::ranges::find(SecretMembers, key) != std::end(SecretMembers);
}

bool IsCounterMember(std::string_view key) {
    return std::ranges::find(CounterMembers, key) != std::end(CounterMembers);
}

bool HasNamedElements(const HostType& list) {
    const HostType& element = *list.element;
    const bool isFixed = list.most != std::numeric_limits<std::size_t>::max();
    return !isFixed &&
           (element.shape == HostType::Shape::Text ||
            &element == &HostTypeOf<tavrosim::Function>() ||
            std::ranges::find(Identities, &element, &Identity::element) != std::end(Identities));
}

std::string NameOfElement(const HostType& element, const Json& value) {
    if (element.shape == HostType::Shape::Text) {
        return TextOfLeaf(value);
    }
    if (&element == &HostTypeOf<tavrosim::Function>()) {
        return NameOfFunction(value);
    }
    const auto row = std::ranges::find(Identities, &element, &Identity::element);
    if (row == std::end(Identities)) {
        return {};
    }
    std::string first = TextOfLeaf(value.at(std::string(row->members[0])));
    if (row->members[1].empty()) {
        return first;
    }
    const std::string second = TextOfLeaf(value.at(std::string(row->members[1])));
    const bool isIPv6 = first.find(':') != std::string::npos;
    return (isIPv6 ? '[' + first + ']' : first) + ':' + second;
}

bool IsHostPart(const HostType& element) {
    return &element == &HostTypeOf<tavrosim::Adapter>() ||
           &element == &HostTypeOf<tavrosim::Port>() ||
           &element == &HostTypeOf<tavrosim::Function>();
}

std::string MemberPath(const std::string& owner, const HostType& type,
                       const tavrosim::HostMember& member) {
    const bool isKind =
        &type == &HostTypeOf<tavrosim::Function>() && member.type->shape == HostType::Shape::Struct;
    return isKind          ? owner
           : owner.empty() ? std::string(member.key)
                           : owner + '.' + std::string(member.key);
}

ListOrigin OriginOf(const HostType& list, const Json& before, const Json& after) {
    Origins origin(after.size());
    if (!HasNamedElements(list)) {
        for (std::size_t index = 0; index < std::min(before.size(), after.size()); ++index) {
            origin[index] = index;
        }
        return origin;
    }
    std::vector<bool> used(before.size());
    if (list.element == &HostTypeOf<tavrosim::Adapter>()) {
        MatchByMacs(before, after, used, origin);
    }
    MatchByName(*list.element, before, after, used, origin);
    return origin;
}

}  // namespace tavrohost
