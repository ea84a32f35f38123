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

using tavrolib::Json;
using tavrolib::Place;
using tavrolib::ShapeError;

constexpr const char* CapturedPart = "captured";
constexpr const char* AnswersPart = "answers";
constexpr const char* HostPart = "host";

// Asked before all else: what a newer format holds is unknown here.
void CheckFormat(const Json& json, const Place& place) {
    WantObject(json, place);
    const auto found = json.find("format");
    if (found == json.end()) {
        return;
    }
    constexpr std::uint32_t Largest = std::numeric_limits<std::uint32_t>::max();
    const std::int64_t format = NumberAt(*found, 1, Largest, Place(place, "format"));
    if (format > HostFormat) {
        throw ShapeError(place, "the file has format " + std::to_string(format) +
                                    "; this library reads format " + std::to_string(HostFormat));
    }
}

// The host of an object; a member `foreign` of it is left to the caller.
Host HostFromJson(const Json& json, const Place& place, std::string_view foreign = {}) {
    CheckFormat(json, place);
    Host host;
    HostValueFromJson(HostTypeOf<Host>(), json, &host, place, foreign);
    CheckHost(host, place);
    StateHardwareOnce(host);
    return host;
}

// Gives a host what was captured.
void TakeCaptured(Host& host, const Json& captured, const Place& place) {
    host.captured = std::make_shared<const CapturedAnswers>(captured, place);
    Host made = HostFromJson(captured[HostPart], Place(place, HostPart));
    made.captured = host.captured;
    host.asCaptured = std::make_shared<const Host>(std::move(made));
}

}  // namespace

Host HostFromText(std::string_view text) {
    const Json json = tavrolib::ParseJson(text);
    const Place root;
    Host host = HostFromJson(json, root, CapturedPart);
    const auto captured = json.find(CapturedPart);
    if (captured != json.end()) {
        TakeCaptured(host, *captured, Place(root, CapturedPart));
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
    Host host = HostFromJson(json, root);
    TakeCaptured(host, captured, Place(root, CapturedPart));
    return host;
}

Host DefaultHost() {
    return HostFromText(DefaultHostText());
}

}  // namespace tavrosim
