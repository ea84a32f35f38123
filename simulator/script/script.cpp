#include "simulator/script/script.h"

#include <algorithm>
#include <array>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "library/json/json.h"
#include "simulator/answers/answer.h"
#include "simulator/answers/members.h"

namespace tavrosim {
namespace {

using tavrolib::Json;
using tavrolib::Place;
using tavrolib::RecordType;
using tavrolib::ShapeError;

constexpr std::array ScriptMembers{"messages", "model", "answers", "comment"};

bool Matches(const Answer& answer, const Call& call) {
    const auto fits = [](const auto& wanted, const auto& given) {
        return !wanted || wanted == given;
    };
    return answer.entryPoint->entryPoint == call.entryPoint &&
           fits(answer.operation, call.operation) && fits(answer.request, call.request) &&
           fits(answer.adapter, call.adapter) && fits(answer.port, call.port) && answer.times != 0U;
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

std::optional<tavrolib::Outcome> Script::Take(const Call& call) {
    const auto found = std::find_if(answers_.begin(), answers_.end(),
                                    [&call](const Answer& each) { return Matches(each, call); });
    if (found == answers_.end()) {
        return std::nullopt;
    }
    Answer& answer = *found;
    if (answer.times) {
        --*answer.times;
    }
    if (call.output != nullptr) {
        answer.FillOutput(call.OutputType(), call.output);
    }
    const RecordType* input = call.InputType();
    if (answer.result && call.input != nullptr && input != nullptr &&
        input->setCompletionCode != nullptr) {
        input->setCompletionCode(call.input, *answer.result);
    }
    return answer.AsOutcome();
}

}  // namespace tavrosim
