#include "simulator/answers/answer.h"

#include <array>
#include <limits>
#include <string_view>

#include "library/text/text.h"
#include "simulator/answers/members.h"

namespace tavrosim {
namespace {

using tavrolib::BytesFromUtf8;
using tavrolib::EntryPoint;
using tavrolib::Json;
using tavrolib::Operation;
using tavrolib::Place;
using tavrolib::RecordType;
using tavrolib::ShapeError;
using tavrolib::WideFromUtf8;

constexpr std::int64_t Largest32 = std::numeric_limits<std::uint32_t>::max();

// What an answer may hold. The last ones stand in traces, which can be used as answers, and mean
// nothing here.
constexpr std::array AnswerMembers{"call",  "operation", "request", "adapter", "port",
                                   "input", "status",    "output",  "error",   "result",
                                   "times", "debug",     "locale",  "comment"};
constexpr std::array ErrorMembers{"code", "message", "action", "additional", "details"};

void ReadText(const Json& object, std::string_view name, std::optional<std::string>& text,
              const Place& place) {
    IfThere(object, name, place,
            [&text](const Json& json, const Place& at) { text = BytesFromUtf8(TextAt(json, at)); });
}

tavroapi::ErrorRecord ReadError(const Json& json, const Place& place) {
    RefuseUnknown(json, ErrorMembers, place);
    tavroapi::ErrorRecord error;
    IfThere(json, "code", place, [&error](const Json& code, const Place& at) {
        error.code = static_cast<std::uint32_t>(NumberAt(code, 0, Largest32, at));
    });
    const auto readText = [&](const char* name, std::wstring& text) {
        IfThere(json, name, place, [&text](const Json& value, const Place& at) {
            text = WideFromUtf8(TextAt(value, at));
        });
    };
    readText("message", error.message);
    readText("action", error.action);
    readText("additional", error.additional);
    readText("details", error.details);
    return error;
}

// Holds the answer's records against what the call is known to have.
void CheckRecords(const Answer& answer, const Place& place) {
    const bool isOperation = answer.entryPoint->entryPoint == EntryPoint::DoOperation;
    if (isOperation && !answer.operation) {
        return;  // it may answer any operation, so its records can be told when it is used only
    }
    const Operation* operation = isOperation ? tavrolib::FindOperation(*answer.operation) : nullptr;
    if (answer.output) {
        const RecordType* type = isOperation ? (operation == nullptr ? nullptr : operation->output)
                                             : answer.entryPoint->output;
        if (type == nullptr) {
            throw ShapeError(Place(place, "output"), "the call has no result record");
        }
        type->check(*answer.output, Place(place, "output"));
    }
    if (answer.result) {
        const RecordType* type = operation == nullptr ? nullptr : operation->input;
        if (type == nullptr || type->setCompletionCode == nullptr) {
            throw ShapeError(Place(place, "result"), "the call leaves no completion code");
        }
    }
}

}  // namespace

tavrolib::Outcome Answer::AsOutcome() const {
    tavrolib::Outcome outcome;
    outcome.status = status;
    outcome.error = error;
    return outcome;
}

void Answer::FillOutput(const RecordType* type, void* record) const {
    if (!output) {
        return;
    }
    const Place root;
    const Place answer(root, place);
    if (type == nullptr) {
        throw ShapeError(Place(answer, "output"), "the call has no known result record");
    }
    type->fill(*output, record, Place(answer, "output"));
}

Answer ReadAnswer(const Json& json, const Place& place) {
    RefuseUnknown(json, AnswerMembers, place);
    Answer answer;
    answer.place = place.Text();
    IfThere(json, "call", place, [&answer](const Json& call, const Place& at) {
        answer.entryPoint = tavrolib::FindEntryPoint(TextAt(call, at));
        if (answer.entryPoint == nullptr) {
            throw ShapeError(at, "there is no such entry point");
        }
    });
    if (answer.entryPoint == nullptr) {
        throw ShapeError(place, "\"call\" is missing");
    }
    IfThere(json, "operation", place, [&answer](const Json& code, const Place& at) {
        answer.operation = static_cast<std::uint32_t>(NumberAt(code, 0, Largest32, at));
    });
    ReadText(json, "request", answer.request, place);
    ReadText(json, "adapter", answer.adapter, place);
    ReadText(json, "port", answer.port, place);
    IfThere(json, "input", place,
            [&answer](const Json& input, const Place&) { answer.input = input; });
    IfThere(json, "status", place, [&answer](const Json& status, const Place& at) {
        answer.status = static_cast<std::uint32_t>(NumberAt(status, 0, Largest32, at));
    });
    IfThere(json, "output", place,
            [&answer](const Json& output, const Place&) { answer.output = output; });
    IfThere(json, "error", place,
            [&answer](const Json& error, const Place& at) { answer.error = ReadError(error, at); });
    IfThere(json, "result", place, [&answer](const Json& result, const Place& at) {
        answer.result = NumberAt(result, std::numeric_limits<std::int32_t>::min(), Largest32, at);
    });
    IfThere(json, "times", place, [&answer](const Json& times, const Place& at) {
        answer.times = static_cast<std::uint64_t>(NumberAt(times, 0, Largest32, at));
    });
    CheckRecords(answer, place);
    return answer;
}

}  // namespace tavrosim
