#include "twin/diff/fitted_patch.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "simulator/host/host_json.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using tavrosim::Host;
using tavrosim::HostMember;
using tavrosim::HostType;
using tavrosim::HostTypeOf;
using Pointer = Json::json_pointer;
using Shape = HostType::Shape;

// Whether a value names a member as earlier versions did.
bool HasFormerKeys(const HostType& type, const Json& value) {
    if (type.shape == Shape::List) {
        return std::ranges::any_of(
            value, [&](const Json& element) { return HasFormerKeys(*type.element, element); });
    }
    return std::ranges::any_of(type.members, [&](const HostMember& member) {
        const auto found = value.find(std::string(member.key));
        return found != value.end() && (member.presence == tavrosim::Presence::Former ||
                                        HasFormerKeys(*member.type, *found));
    });
}

// The document without what is no member of a host's own.
Json OwnMembers(const Json& document) {
    Json own = Json::object();
    for (const HostMember& member : HostTypeOf<Host>().members) {
        const auto found = document.find(std::string(member.key));
        if (found != document.end()) {
            own[std::string(member.key)] = *found;
        }
    }
    return own;
}

// Whether the document only leaves out of `whole` what is as usual.
bool IsWrittenAsNow(const Json& own, const Json& whole) {
    const HostType& type = HostTypeOf<Host>();
    Host host;
    tavrosim::HostValueFromJson(type, own, &host, tavrolib::Place());
    return !HasFormerKeys(type, own) && tavrosim::HostValueToJson(type, &host) == whole;
}

// Takes steps to the document and to the host with all its members, and notes those to the first.
class Fitting {
  public:
    Fitting(Json document, Json whole) : document_(std::move(document)), whole_(std::move(whole)) {}

    void Take(Json step) {
        if (step.contains("from")) {
            MakeRoomFor(Pointer(step.at("from").get<std::string>()));
        }
        MakeRoomFor(Pointer(step.at("path").get<std::string>()));
        whole_.patch_inplace(Json::array({step}));
        Note(std::move(step));
    }

    Json TakeSteps() { return std::move(steps_); }

  private:
    // Adds what the document leaves out above the place, and there where a value has to stand.
    void MakeRoomFor(const Pointer& place) {
        std::vector<std::string> missing;
        for (Pointer above = place; !above.empty(); above.pop_back()) {
            if (whole_.contains(above) && !document_.contains(above)) {
                missing.push_back(above.to_string());
            }
        }
        if (!missing.empty()) {
            AddMissing(Pointer(missing.back()));
        }
    }

    // The elements of a list are there up to the one that is missing, or it is a member.
    void AddMissing(const Pointer& place) {
        const Pointer owner = place.parent_pointer();
        if (!document_.at(owner).is_array()) {
            Note({{"op", "add"}, {"path", place.to_string()}, {"value", whole_.at(place)}});
            return;
        }
        const Json& elements = whole_.at(owner);
        for (std::size_t index = document_.at(owner).size(); index < elements.size(); ++index) {
            Note(
                {{"op", "add"}, {"path", (owner / index).to_string()}, {"value", elements[index]}});
        }
    }

    void Note(Json step) {
        document_.patch_inplace(Json::array({step}));
        steps_.push_back(std::move(step));
    }

    Json document_;
    Json whole_;
    Json steps_ = Json::array();
};

}  // namespace

Json FittedPatch(const Json& document, const Host& before, const Json& patch) {
    const Json whole = tavrosim::HostValueToJson(HostTypeOf<Host>(), &before);
    const Json own = OwnMembers(document);
    if (patch.empty()) {
        return patch;
    }
    if (!IsWrittenAsNow(own, whole)) {
        Json steps = Json::diff(own, whole);
        steps.insert(steps.end(), patch.begin(), patch.end());
        return steps;
    }
    Fitting fitting(own, whole);
    for (const Json& step : patch) {
        fitting.Take(step);
    }
    return fitting.TakeSteps();
}

}  // namespace tavrohost
