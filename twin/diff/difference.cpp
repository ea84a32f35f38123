#include "twin/diff/difference.h"

#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "simulator/host/host_json.h"
#include "twin/diff/identity.h"
#include "twin/diff/rearrangement.h"

namespace tavrohost {
namespace {

using tavrosim::HostMember;
using tavrosim::HostTypeOf;
using tavrosim::Presence;
using Shape = HostType::Shape;
using StepKind = RearrangementStep::Kind;

constexpr const char* Mask = "***";

// A place in both hosts, for people and as a JSON Pointer.
struct Spot {
    HostPart part;
    std::string pointer;
};

Spot MemberOf(const Spot& owner, const HostType& type, const HostMember& member) {
    Spot spot = owner;
    spot.part.member = MemberPath(owner.part.member, type, member);
    spot.pointer += '/';
    spot.pointer += member.key;
    return spot;
}

// The element that people know by `value`, at the place `index` of the list.
Spot ElementOf(const Spot& list, const HostType& type, const Json& value, std::size_t index) {
    Spot spot = list;
    spot.pointer += '/' + std::to_string(index);
    const std::string name =
        HasNamedElements(type) ? NameOfElement(*type.element, value) : std::to_string(index);
    const auto enter = [&](HostPart::Level level, std::string HostPart::*part) {
        spot.part.level = level;
        spot.part.*part = name;
        spot.part.member.clear();
    };
    if (type.element == &HostTypeOf<tavrosim::Adapter>()) {
        enter(HostPart::Level::Adapter, &HostPart::adapter);
    } else if (type.element == &HostTypeOf<tavrosim::Port>()) {
        enter(HostPart::Level::Port, &HostPart::port);
    } else if (type.element == &HostTypeOf<tavrosim::Function>()) {
        enter(HostPart::Level::Function, &HostPart::function);
        spot.part.key = name.substr(name.find(' ') + 1);
    } else {
        spot.part.member += '[' + name + ']';
    }
    return spot;
}

// Makes something of every secret that stands in the value.
template <class Treat>
void TreatSecrets(const HostType& type, Json& value, const Treat& treat) {
    if (type.shape == Shape::List) {
        for (Json& element : value) {
            TreatSecrets(*type.element, element, treat);
        }
    } else if (type.shape == Shape::Struct) {
        for (const HostMember& member : type.members) {
            const auto found = value.find(std::string(member.key));
            if (found == value.end()) {
                continue;
            }
            if (IsSecretMember(member.key)) {
                treat(value, found, member);
            } else {
                TreatSecrets(*member.type, *found, treat);
            }
        }
    }
}

Json Masked(const HostType& type, Json value) {
    TreatSecrets(type, value, [](Json&, const Json::iterator& secret, const HostMember&) {
        if (!secret->get_ref<const std::string&>().empty()) {
            *secret = Mask;
        }
    });
    return value;
}

Json WithoutSecrets(const HostType& type, Json value) {
    TreatSecrets(type, value,
                 [](Json& owner, const Json::iterator& secret, const HostMember& member) {
                     if (member.presence == Presence::Required) {
                         *secret = "";
                     } else {
                         owner.erase(secret);
                     }
                 });
    return value;
}

class Comparison {
  public:
    Comparison(const DiffOptions& options, Difference& result)
        : options_(options), result_(result) {}

    void Compare(const HostType& type, const Json& before, const Json& after, const Spot& spot) {
        if (before == after) {
            return;
        }
        switch (type.shape) {
            case Shape::Struct:
                CompareStructs(type, before, after, spot);
                break;
            case Shape::List:
                CompareLists(type, before, after, spot);
                break;
            default:
                Note(Change::Kind::Changed, type, before, after, spot);
                Patch("replace", type, after, spot.pointer);
        }
    }

  private:
    void CompareStructs(const HostType& type, const Json& before, const Json& after,
                        const Spot& spot) {
        for (const HostMember& member : type.members) {
            if (member.presence == Presence::Former ||
                (IsCounterMember(member.key) && !options_.counters)) {
                continue;
            }
            const std::string key(member.key);
            const auto old = before.find(key);
            const auto now = after.find(key);
            if (old == before.end() && now == after.end()) {
                continue;
            }
            const Spot place = MemberOf(spot, type, member);
            if (old == before.end()) {
                Note(Change::Kind::Added, *member.type, Json(), *now, place);
                Patch("add", *member.type, *now, place.pointer);
            } else if (now == after.end()) {
                Note(Change::Kind::Removed, *member.type, *old, Json(), place);
                PatchAway(place.pointer);
            } else if (IsSecretMember(key)) {
                CompareSecrets(*member.type, *old, *now, place);
            } else {
                Compare(*member.type, *old, *now, place);
            }
        }
    }

    void CompareSecrets(const HostType& type, const Json& before, const Json& after,
                        const Spot& spot) {
        if (before == after) {
            return;
        }
        Note(Change::Kind::Changed, type, Mask, Mask, spot);
        if (options_.withSecrets) {
            Patch("replace", type, after, spot.pointer);
        }
    }

    void CompareLists(const HostType& type, const Json& before, const Json& after,
                      const Spot& spot) {
        const ListOrigin origin = OriginOf(type, before, after);
        const std::vector<RearrangementStep> steps = Rearrange(before.size(), origin);
        PatchOrder(type, after, steps, spot);
        for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
            if (step->kind == StepKind::Remove) {
                NoteElement(Change::Kind::Removed, type, before, step->element, spot);
            }
        }
        for (std::size_t index = 0; index < after.size(); ++index) {
            if (origin[index]) {
                const Json& former = before[*origin[index]];
                Compare(*type.element, former, after[index], ElementOf(spot, type, former, index));
            } else {
                NoteElement(Change::Kind::Added, type, after, index, spot);
            }
        }
    }

    // The list gets its elements in their order; those that stay are as they were.
    void PatchOrder(const HostType& type, const Json& after,
                    const std::vector<RearrangementStep>& steps, const Spot& spot) {
        const auto pointer = [&spot](std::size_t index) {
            return spot.pointer + '/' + std::to_string(index);
        };
        for (const RearrangementStep& step : steps) {
            if (step.kind == StepKind::Remove) {
                PatchAway(pointer(step.at));
            } else if (step.kind == StepKind::Move) {
                result_.patch.push_back(
                    {{"op", "move"}, {"from", pointer(step.from)}, {"path", pointer(step.at)}});
            } else {
                Patch("add", *type.element, after[step.element], pointer(step.at));
            }
        }
    }

    void Patch(const char* operation, const HostType& type, const Json& value,
               const std::string& pointer) {
        result_.patch.push_back(
            {{"op", operation},
             {"path", pointer},
             {"value", options_.withSecrets ? value : WithoutSecrets(type, value)}});
    }

    void PatchAway(const std::string& pointer) {
        result_.patch.push_back({{"op", "remove"}, {"path", pointer}});
    }

    void Note(Change::Kind kind, const HostType& type, const Json& before, const Json& after,
              const Spot& spot) {
        result_.changes.push_back({.kind = kind,
                                   .where = spot.part,
                                   .before = Masked(type, before),
                                   .after = Masked(type, after),
                                   .type = &type});
    }

    void NoteElement(Change::Kind kind, const HostType& list, const Json& elements,
                     std::size_t index, const Spot& spot) {
        const Json& element = elements[index];
        const bool isAdded = kind == Change::Kind::Added;
        Note(kind, *list.element, isAdded ? Json() : element, isAdded ? element : Json(),
             ElementOf(spot, list, element, index));
        result_.changes.back().isElement = true;
    }

    const DiffOptions& options_;
    Difference& result_;
};

}  // namespace

Difference DifferenceOf(const tavrosim::Host& before, const tavrosim::Host& after,
                        const DiffOptions& options) {
    Difference difference;
    difference.patch = Json::array();
    const HostType& type = HostTypeOf<tavrosim::Host>();
    Comparison(options, difference)
        .Compare(type, tavrosim::HostValueToJson(type, &before),
                 tavrosim::HostValueToJson(type, &after), Spot());
    return difference;
}

}  // namespace tavrohost
