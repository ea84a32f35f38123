#include "twin/rehearse/plan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>

#include "library/json/json.h"
#include "library/text/text.h"
#include "simulator/host/host_file.h"
#include "simulator/host/host_json.h"
#include "twin/answers/answer_book.h"
#include "twin/run/secrets.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using tavrolib::Place;
using tavrolib::ShapeError;
using tavrosim::Host;

constexpr int PlanFormat = 1;
constexpr std::string_view Members[] = {"format", "arguments", "answers",    "before",
                                        "after",  "used",      "operations", "restart_required"};

// A command may have given the twin a secret, which nobody can compare with the host's.
Json HostToJson(const Host& host) {
    const Host open = WithoutSecrets(host);
    return HostValueToJson(tavrosim::HostTypeOf<Host>(), &open);
}

// The member of that name, which has to be there.
const Json& MemberOf(const Json& json, const char* name) {
    const auto found = json.find(name);
    if (found == json.end()) {
        throw ShapeError("\"" + std::string(name) + "\" is missing");
    }
    return *found;
}

// The number at a place, which has 32 bits.
std::uint32_t Number32(const Json& json, const Place& place) {
    return static_cast<std::uint32_t>(
        NumberAt(json, 0, std::numeric_limits<std::uint32_t>::max(), place));
}

Json OperationToJson(const RehearsedOperation& operation) {
    Json json = Json::object();
    json["operation"] = operation.code;
    json["request"] = tavrolib::Utf8FromBytes(operation.request);
    json["status"] = operation.status;
    if (operation.completionCode) {
        json["completion_code"] = *operation.completionCode;
    }
    if (operation.isIncomplete) {
        json["incomplete"] = true;
    }
    return json;
}

RehearsedOperation OperationFromJson(const Json& json, const Place& place) {
    WantObject(json, place);
    constexpr std::array<std::string_view, 5> Names = {"operation", "request", "status",
                                                       "completion_code", "incomplete"};
    RefuseUnknownMembers(
        json, [&](std::string_view name) { return std::ranges::find(Names, name) != Names.end(); },
        place);
    for (const char* const name : {"operation", "request", "status"}) {
        if (!json.contains(name)) {
            throw ShapeError(place, "\"" + std::string(name) + "\" is missing");
        }
    }
    RehearsedOperation operation{
        .code = Number32(json["operation"], Place(place, "operation")),
        .request = tavrolib::BytesFromUtf8(TextAt(json["request"], Place(place, "request"))),
        .status = Number32(json["status"], Place(place, "status"))};
    if (json.contains("completion_code")) {
        operation.completionCode =
            NumberAt(json["completion_code"], std::numeric_limits<std::int64_t>::min(),
                     std::numeric_limits<std::int64_t>::max(), Place(place, "completion_code"));
    }
    if (json.contains("incomplete")) {
        operation.isIncomplete = TruthAt(json["incomplete"], Place(place, "incomplete"));
    }
    return operation;
}

// The elements of the array that the member of that name holds.
template <class Read>
auto ElementsOf(const Json& json, const char* name, Read read) {
    const Place root;
    const Place place(root, name);
    const Json& array = MemberOf(json, name);
    const std::size_t count = SizeAt(array, std::numeric_limits<std::size_t>::max(), place);
    std::vector<decltype(read(array, place))> elements;
    for (std::size_t i = 0; i < count; ++i) {
        elements.push_back(read(array[i], Place(place, i)));
    }
    return elements;
}

Host HostAt(const Json& json, const char* name) {
    Host host;
    const Place root;
    const Json& member = MemberOf(json, name);
    HostValueFromJson(tavrosim::HostTypeOf<Host>(), member, &host, Place(root, name));
    CheckHost(host);
    return host;
}

bool TruthOf(const Json& json, const char* name) {
    return tavrolib::TruthAt(MemberOf(json, name), Place(Place(), name));
}

void RefuseNewerFormat(const Json& json) {
    const auto format = NumberAt(MemberOf(json, "format"), 1, std::numeric_limits<int>::max(),
                                 Place(Place(), "format"));
    if (format > PlanFormat) {
        throw ShapeError("the plan has format " + std::to_string(format) +
                         "; this tool reads format " + std::to_string(PlanFormat));
    }
}

}  // namespace

std::string TextFromPlan(const Plan& plan) {
    Json json = Json::object();
    json["format"] = PlanFormat;
    json["arguments"] = Json::array();
    for (const std::string& argument : plan.arguments) {
        json["arguments"].push_back(tavrolib::Utf8FromBytes(argument));
    }
    json["answers"] = plan.answers;
    json["operations"] = Json::array();
    for (const RehearsedOperation& operation : plan.operations) {
        json["operations"].push_back(OperationToJson(operation));
    }
    json["restart_required"] = plan.restartRequired;
    json["used"] = plan.isUsed;
    json["before"] = HostToJson(plan.before);
    json["after"] = HostToJson(plan.after);
    constexpr int Indent = 2;
    return json.dump(Indent) + '\n';
}

Plan PlanFromText(std::string_view text) {
    const Json json = tavrolib::ParseJson(text);
    const Place root;
    WantObject(json, root);
    // A newer plan may have members that are unknown here, which is not what is wrong with it.
    RefuseNewerFormat(json);
    RefuseUnknownMembers(
        json,
        [](std::string_view name) { return std::ranges::find(Members, name) != std::end(Members); },
        root);
    Plan plan;
    plan.arguments = ElementsOf(json, "arguments", [](const Json& argument, const Place& place) {
        return tavrolib::BytesFromUtf8(TextAt(argument, place));
    });
    plan.operations = ElementsOf(json, "operations", OperationFromJson);
    plan.answers = MemberOf(json, "answers");
    const AnswerBook checked(plan.answers);
    plan.before = HostAt(json, "before");
    plan.after = HostAt(json, "after");
    plan.restartRequired = TruthOf(json, "restart_required");
    plan.isUsed = TruthOf(json, "used");
    return plan;
}

}  // namespace tavrohost
