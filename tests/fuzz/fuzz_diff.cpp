// Compares two hosts, which an array of two JSON documents describes. A patch makes one of the
// other, there and back; both ways tell the same changes; no text holds what acts on a terminal.
#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <tuple>

#include "fuzz/host_words.h"
#include "fuzz/json_mutation.h"
#include "fuzz/require.h"
#include "simulator/host/host.h"
#include "simulator/host/host_json.h"
#include "twin/diff/difference.h"
#include "twin/diff/fitted_patch.h"
#include "twin/diff/text.h"

namespace {

using tavrohost::Change;
using tavrohost::Difference;
using tavrolib::Json;
using tavrosim::Host;
// Members in the order of their keys, in which equal objects are equal.
using Unordered = nlohmann::json;

std::optional<Host> HostFrom(const Json& json) {
    try {
        Host host;
        tavrosim::HostValueFromJson(tavrosim::HostTypeOf<Host>(), json, &host, {});
        return host;
    } catch (const tavrolib::ShapeError&) {
        return std::nullopt;
    }
}

Json JsonOf(const Host& host) {
    return tavrosim::HostValueToJson(tavrosim::HostTypeOf<Host>(), &host);
}

Unordered Patched(const Json& document, const Json& patch) {
    return Unordered(document).patch(Unordered(patch));
}

constexpr tavrohost::DiffOptions Everything{.counters = true, .withSecrets = true};

// How many changes there are of each kind with each pair of values, those of the other way turned
// around.
using Told = std::map<std::tuple<Change::Kind, std::string, std::string>, int>;
Told ToldBy(const Difference& difference, bool isTurned) {
    Told told;
    for (const Change& change : difference.changes) {
        const bool isSwapped = isTurned && change.kind != Change::Kind::Changed;
        const Change::Kind kind = !isSwapped                           ? change.kind
                                  : change.kind == Change::Kind::Added ? Change::Kind::Removed
                                                                       : Change::Kind::Added;
        const std::string before = change.before.dump();
        const std::string after = change.after.dump();
        ++told[isTurned ? std::tuple(kind, after, before) : std::tuple(kind, before, after)];
    }
    return told;
}

void RequireHarmless(const Difference& difference) {
    const std::string text = tavrohost::TextOf(difference);
    Require(text.empty() == difference.changes.empty());
    Require(text.empty() || text.back() == '\n');
    Require(std::ranges::none_of(text, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return (byte < 0x20 && byte != '\n') || byte == 0x7F;
    }));
}

void Compare(const Host& before, const Json& file, const Host& after) {
    const Difference difference = tavrohost::DifferenceOf(before, after, Everything);
    Require(Patched(JsonOf(before), difference.patch) == Unordered(JsonOf(after)));
    RequireHarmless(difference);
    RequireHarmless(tavrohost::DifferenceOf(before, after));
    // What a file names as earlier versions did stays there, beside its new name.
    const Json fitted = tavrohost::FittedPatch(file, before, difference.patch);
    const auto made = HostFrom(Json(Patched(file, fitted)));
    Require(made.has_value());
}

void CompareWithItself(const Host& host) {
    const Difference difference = tavrohost::DifferenceOf(host, host, Everything);
    Require(difference.changes.empty() && difference.patch.empty());
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t mostSize, unsigned seed) {
    return tavro_fuzz::MutateJsonText(data, size, mostSize, seed, tavro_fuzz::HostWords());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Json both;
    try {
        both = tavrolib::ParseJson(BytesOf(data, size));
    } catch (const tavrolib::ShapeError&) {
        return 0;
    }
    if (!both.is_array() || both.size() != 2) {
        return 0;
    }
    const auto before = HostFrom(both[0]);
    const auto after = HostFrom(both[1]);
    if (!before || !after) {
        return 0;
    }
    CompareWithItself(*before);
    Compare(*before, both[0], *after);
    Compare(*after, both[1], *before);
    Require(ToldBy(tavrohost::DifferenceOf(*before, *after, Everything), false) ==
            ToldBy(tavrohost::DifferenceOf(*after, *before, Everything), true));
    return 0;
}
