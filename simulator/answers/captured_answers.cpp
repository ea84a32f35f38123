#include "simulator/answers/captured_answers.h"

#include <algorithm>
#include <array>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>

#include "library/text/identifier.h"
#include "library/text/text.h"
#include "simulator/answers/answer.h"
#include "simulator/answers/members.h"
#include "tavroapi/operation_code.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::Findings;
using tavrolib::Json;
using tavrolib::Place;
using tavrolib::RecordType;
using tavrolib::ShapeError;
using tavrolib::Utf8FromBytes;

constexpr std::array CapturedMembers{"call",  "operation", "request", "adapter", "port",
                                     "input", "status",    "output",  "error"};

constexpr std::array PartNames{"answers", "host"};

constexpr auto Number(OperationCode code) {
    return static_cast<std::uint32_t>(code);
}

// The operations that tell of a host and leave it as it is. Others fill in records as well: pings,
// resets of counters, an export.
constexpr std::array ReadingOperations{
    OperationCode::ReadIscsiPort,       OperationCode::ListPortals,
    OperationCode::ListTargets,         OperationCode::ListActiveTargets,
    OperationCode::ReadTarget,          OperationCode::ListLuns,
    OperationCode::ReadIscsiStatistics, OperationCode::ReadSession,
    OperationCode::ReadIscsiDefaults,   OperationCode::ReadIscsiBoot,
    OperationCode::ListIsnsServers,     OperationCode::ReadInitiator,
    OperationCode::ReadFcoePort,        OperationCode::ListFcoeTargets,
    OperationCode::ReadFcoeTarget,      OperationCode::ListFcoeLuns,
    OperationCode::ReadFcoeStatistics,  OperationCode::ListFcoeBindings,
    OperationCode::ReadDcbInfo,         OperationCode::ReadFcoeBoot,
    OperationCode::ReadDcbConfig,       OperationCode::ReadFip,
    OperationCode::ListVirtualPorts,    OperationCode::ListVirtualPortTargets,
    OperationCode::ListVirtualPortLuns, OperationCode::ReadPartitions,
    OperationCode::ReadPersonality,     OperationCode::ReadEthernetPort,
    OperationCode::ReadAdapterSettings, OperationCode::ReadEthernetStatistics,
    OperationCode::ReadEthernetTcpIp,   OperationCode::ReadAdapterState,
};

bool Reads(std::uint32_t operation) {
    return std::ranges::find(ReadingOperations, operation, Number) != ReadingOperations.end();
}

// The operations whose inputs are WWNs.
bool TakesWwns(std::uint32_t operation) {
    return operation == Number(OperationCode::ReadFcoeTarget) ||
           operation == Number(OperationCode::ListFcoeLuns) ||
           operation == Number(OperationCode::ListVirtualPortTargets) ||
           operation == Number(OperationCode::ListVirtualPortLuns);
}

Json WithNormalTexts(Json input) {
    if (input.is_string()) {
        return tavrolib::NormalText(input.get<std::string>());
    }
    if (input.is_array()) {
        for (Json& element : input) {
            element = WithNormalTexts(element);
        }
    }
    return input;
}

// What of an operation's input identifies what is read. The rest of a session's record is filled
// in by the library.
Json IdentifyingInput(std::uint32_t operation, const Json& input) {
    constexpr std::size_t SessionTexts = 2;
    if (operation == Number(OperationCode::ReadSession) && input.is_array() &&
        input.size() > SessionTexts) {
        return Json::array({input[0], input[1]});
    }
    return TakesWwns(operation) ? WithNormalTexts(input) : input;
}

// One text for all that identifies what is read. An identifier that is left out is an empty one.
std::string KeyOf(EntryPoint entryPoint, std::optional<std::uint32_t> code,
                  const std::optional<std::string>& request,
                  const std::optional<std::string>& adapter, const std::optional<std::string>& port,
                  const Json& input) {
    std::uint32_t operation = code.value_or(0);
    if (operation == Number(OperationCode::ExportAdapterSettings)) {
        operation = Number(OperationCode::ReadAdapterSettings);
    }
    const auto text = [](const std::optional<std::string>& given) {
        return Utf8FromBytes(given.value_or(""));
    };
    return tavrolib::LineOf(Json::array(
        {static_cast<int>(entryPoint), operation, text(tavrolib::NormalText(request.value_or(""))),
         text(adapter), text(port), IdentifyingInput(operation, input)}));
}

bool IsServed(EntryPoint entryPoint) {
    switch (entryPoint) {
        case EntryPoint::Initialize:
        case EntryPoint::Uninitialize:
        case EntryPoint::GetLocalizeMessage:
        case EntryPoint::GetLastErrorMessage:
            return false;
        default:
            return true;
    }
}

void RefuseInput(const Answer& answer, const Place& place) {
    if (answer.input) {
        throw ShapeError(Place(place, "input"), "the call has no input");
    }
}

// What a script may leave open must be told here.
void CheckIdentifiesCall(const Answer& answer, const Place& place) {
    if (!IsServed(answer.entryPoint->entryPoint)) {
        throw ShapeError(Place(place, "call"), "a call that reads something of a host is wanted");
    }
    if (answer.entryPoint->entryPoint != EntryPoint::DoOperation) {
        RefuseInput(answer, place);
        return;
    }
    if (!answer.operation) {
        throw ShapeError(place, "\"operation\" is missing");
    }
    const tavrolib::Operation* const operation = tavrolib::FindOperation(*answer.operation);
    if (operation == nullptr || !Reads(*answer.operation)) {
        throw ShapeError(Place(place, "operation"), "an operation that reads is wanted");
    }
    if (operation->input == nullptr) {
        RefuseInput(answer, place);
    } else if (!answer.input) {
        throw ShapeError(place, "\"input\" is missing");
    }
}

}  // namespace

CapturedAnswers::CapturedAnswers(const Json& captured, const Place& place)
    : json_(std::make_unique<const Json>(captured)) {
    Findings first;
    Read(place, first);
}

CapturedAnswers::CapturedAnswers(const Json& captured, const Place& place, Findings& findings)
    : json_(std::make_unique<const Json>(captured)) {
    Read(place, findings);
}

void CapturedAnswers::Read(const Place& place, Findings& findings) {
    if (!findings.PassReading(place, [&] { WantObject(*json_, place); })) {
        return;
    }
    CheckMembers(*json_, IsOneOf(PartNames), place, findings);
    for (const char* const part : PartNames) {
        if (!json_->contains(part)) {
            findings.Add(place, '"' + std::string(part) + "\" is missing");
        }
    }
    const auto answers = json_->find("answers");
    if (answers == json_->end()) {
        return;
    }
    const Place at(place, "answers");
    std::size_t count = 0;
    findings.PassReading(
        at, [&] { count = SizeAt(*answers, std::numeric_limits<std::size_t>::max(), at); });
    answers_.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        findings.Pass([&] { Add((*answers)[i], Place(at, i)); });
    }
}

CapturedAnswers::~CapturedAnswers() = default;

void CapturedAnswers::Add(const Json& json, const Place& place) {
    RefuseUnknown(json, CapturedMembers, place);
    const Answer& answer = answers_.emplace_back(ReadAnswer(json, place));
    CheckIdentifiesCall(answer, place);
    index_.try_emplace(KeyOf(answer.entryPoint->entryPoint, answer.operation, answer.request,
                             answer.adapter, answer.port, answer.input.value_or(Json())),
                       answers_.size() - 1);
}

std::string AnswerKey(const Call& call) {
    const RecordType* const input = call.InputType();
    return KeyOf(call.entryPoint, call.operation, call.request, call.adapter, call.port,
                 input == nullptr ? Json() : input->toJson(call.input, tavrolib::Secrets::Hidden));
}

const Answer* CapturedAnswers::Find(const Call& call) const {
    const auto found = index_.find(AnswerKey(call));
    return found == index_.end() ? nullptr : &answers_[found->second];
}

}  // namespace tavrosim
