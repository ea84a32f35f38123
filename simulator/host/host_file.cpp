#include "simulator/host/host_file.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "simulator/answers/captured_answers.h"
#include "simulator/host/default_host.h"
#include "simulator/host/former_hardware.h"
#include "simulator/host/host_json.h"

namespace tavrosim {
namespace {

using tavrolib::Findings;
using tavrolib::Json;
using tavrolib::Place;

constexpr const char* CapturedPart = "captured";
constexpr const char* AnswersPart = "answers";
constexpr const char* HostPart = "host";

// Asked before all else: what a newer format holds is unknown here.
bool HasKnownFormat(const Json& json, const Place& place, Findings& findings) {
    if (!findings.PassReading(place, [&] { WantObject(json, place); })) {
        return false;
    }
    const auto found = json.find("format");
    if (found == json.end()) {
        return true;
    }
    constexpr std::uint32_t Largest = std::numeric_limits<std::uint32_t>::max();
    const Place at(place, "format");
    std::int64_t format = HostFormat;
    findings.PassReading(at, [&] { format = NumberAt(*found, 1, Largest, at); });
    if (format > HostFormat) {
        findings.Add(place, "the file has format " + std::to_string(format) +
                                "; this library reads format " + std::to_string(HostFormat));
    }
    return format <= HostFormat;
}

// The host of an object; a member `foreign` of it is left to the caller.
std::optional<Host> HostFromJson(const Json& json, const Place& place, Findings& findings,
                                 std::string_view foreign = {}) {
    if (!HasKnownFormat(json, place, findings)) {
        return std::nullopt;
    }
    Host host;
    HostValueFromJson(HostTypeOf<Host>(), json, &host, place, foreign, findings);
    CheckHost(host, place, findings);
    if (!findings.AreCollected()) {
        StateHardwareOnce(host);
    }
    return host;
}

// Gives a host what was captured.
void TakeCaptured(Host& host, const Json& captured, const Place& place, Findings& findings) {
    host.captured = std::make_shared<const CapturedAnswers>(captured, place, findings);
    const auto part = captured.find(HostPart);
    if (part == captured.end()) {
        return;
    }
    if (auto made = HostFromJson(*part, Place(place, HostPart), findings)) {
        made->captured = host.captured;
        host.asCaptured = std::make_shared<const Host>(*std::move(made));
    }
}

}  // namespace

Host HostFromText(std::string_view text) {
    Findings first;
    return *HostFromText(text, first);
}

std::optional<Host> HostFromText(std::string_view text, Findings& findings) {
    Json json;
    if (!findings.Pass([&] { json = tavrolib::ParseJson(text); })) {
        return std::nullopt;
    }
    const Place root;
    std::optional<Host> host = HostFromJson(json, root, findings, CapturedPart);
    const auto captured = json.find(CapturedPart);
    if (host && captured != json.end()) {
        TakeCaptured(*host, *captured, Place(root, CapturedPart), findings);
    }
    return host;
}

std::string TextFromHost(const Host& host) {
    constexpr int Indent = 2;
    Json json = HostValueToJson(HostTypeOf<Host>(), &host);
    if (host.captured != nullptr) {
        json[CapturedPart] = host.captured->AsJson();
    }
    return json.dump(Indent) + '\n';
}

Host CapturedHost(const Host& made, const Json& answers) {
    const Json json = HostValueToJson(HostTypeOf<Host>(), &made);
    Json captured = Json::object();
    captured[AnswersPart] = answers;
    captured[HostPart] = json;
    const Place root;
    Findings first;
    Host host = *HostFromJson(json, root, first);
    TakeCaptured(host, captured, Place(root, CapturedPart), first);
    return host;
}

Host DefaultHost() {
    return HostFromText(DefaultHostText());
}

}  // namespace tavrosim
