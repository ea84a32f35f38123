#include "simulator/script/script.h"

#include <algorithm>
#include <array>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "library/json/json.h"
#include "library/text/text.h"

namespace tavrosim {

using tavrolib::BytesFromUtf8;
using tavrolib::EntryPoint;
using tavrolib::EntryPointRow;
using tavrolib::Json;
using tavrolib::Operation;
using tavrolib::Place;
using tavrolib::RecordType;
using tavrolib::ShapeError;
using tavrolib::WideFromUtf8;

struct Answer {
    const EntryPointRow* entryPoint = nullptr;
    std::optional<std::uint32_t> operation;
    std::optional<std::string> request;
    std::optional<std::string> adapter;
    std::optional<std::string> port;
    std::uint32_t status = 0;
    std::optional<Json> output;
    std::optional<tavroapi::ErrorRecord> error;
    std::optional<std::int64_t> result;
    std::optional<std::uint64_t> timesLeft;
    std::string place;

    bool Matches(const Call& call) const {
        const auto fits = [](const auto& wanted, const auto& given) {
            return !wanted || wanted == given;
        };
        return entryPoint->entryPoint == call.entryPoint && fits(operation, call.operation) &&
               fits(request, call.request) && fits(adapter, call.adapter) &&
               fits(port, call.port) && timesLeft != 0U;
    }
};

namespace {

constexpr std::int64_t Largest32 = std::numeric_limits<std::uint32_t>::max();

// What an answer may hold. The last ones stand in traces, which can be used as scripts, and mean
// nothing here.
constexpr std::array AnswerMembers{"call",   "operation", "request", "adapter", "port",
                                   "status", "output",    "error",   "result",  "times",
                                   "input",  "debug",     "locale",  "comment"};
constexpr std::array ErrorMembers{"code", "message", "action", "additional", "details"};
constexpr std::array ScriptMembers{"messages", "model", "answers", "comment"};

template <class Names>
void RefuseUnknown(const Json& object, const Names& known, const Place& place) {
    const auto isKnown = [&known](std::string_view name) {
        return std::find(known.begin(), known.end(), name) != known.end();
    };
    RefuseUnknownMembers(object, isKnown, place);
}

// Calls `use(member, its place)` where the object has the member.
template <class Use>
void IfThere(const Json& object, std::string_view name, const Place& place, const Use& use) {
    const auto found = object.find(std::string(name));
    if (found != object.end()) {
        use(*found, Place(place, name));
    }
}

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
void CheckRecords(const Answer& answer, const Json& json, const Place& place) {
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
        type->check(json.at("output"), Place(place, "output"));
    }
    if (answer.result) {
        const RecordType* type = operation == nullptr ? nullptr : operation->input;
        if (type == nullptr || type->setCompletionCode == nullptr) {
            throw ShapeError(Place(place, "result"), "the call leaves no completion code");
        }
    }
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
        answer.timesLeft = static_cast<std::uint64_t>(NumberAt(times, 0, Largest32, at));
    });
    CheckRecords(answer, json, place);
    return answer;
}

}  // namespace

Script::Script() = default;
Script::~Script() = default;
Script::Script(Script&&) noexcept = default;
Script& Script::operator=(Script&&) noexcept = default;

Script Script::FromText(std::string_view text) {
    const Json json = tavrolib::ParseJson(text);
    const Place root;
    RefuseUnknown(json, ScriptMembers, root);
    Script script;
    IfThere(json, "messages", root, [&script](const Json& messages, const Place& at) {
        const std::string& kind = TextAt(messages, at);
        if (kind != "numbers" && kind != "words") {
            throw ShapeError(at, "\"numbers\" or \"words\" is wanted");
        }
        script.messagesAreNumbers_ = kind == "numbers";
    });
    IfThere(json, "model", root, [&script](const Json& model, const Place& at) {
        script.hasModel_ = TruthAt(model, at);
    });
    IfThere(json, "answers", root, [&script](const Json& answers, const Place& at) {
        const std::size_t count = SizeAt(answers, std::numeric_limits<std::size_t>::max(), at);
        for (std::size_t i = 0; i < count; ++i) {
            script.answers_.push_back(ReadAnswer(answers[i], Place(at, i)));
        }
    });
    return script;
}

const Answer* Script::Take(const Call& call) {
    const auto found = std::find_if(answers_.begin(), answers_.end(),
                                    [&call](const Answer& answer) { return answer.Matches(call); });
    if (found == answers_.end()) {
        return nullptr;
    }
    if (found->timesLeft) {
        --*found->timesLeft;
    }
    const RecordType* output = call.OutputType();
    if (found->output && call.output != nullptr) {
        const Place root;
        const Place answer(root, found->place);
        if (output == nullptr) {
            throw ShapeError(Place(answer, "output"), "the call has no known result record");
        }
        output->fill(*found->output, call.output, Place(answer, "output"));
    }
    const RecordType* input = call.InputType();
    if (found->result && call.input != nullptr && input != nullptr &&
        input->setCompletionCode != nullptr) {
        input->setCompletionCode(call.input, *found->result);
    }
    return &*found;
}

std::uint32_t StatusOf(const Answer& answer) {
    return answer.status;
}

const tavroapi::ErrorRecord* ErrorOf(const Answer& answer) {
    return answer.error ? &*answer.error : nullptr;
}

}  // namespace tavrosim
