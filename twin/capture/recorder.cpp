#include "twin/capture/recorder.h"

#include <utility>

#include "simulator/answers/captured_answers.h"

namespace tavrohost {

bool CallRecorder::Perform(const tavrolib::Call& call) {
    if (!made_.insert(tavrosim::AnswerKey(call)).second) {
        return false;
    }
    tavrolib::Json line = CallToJson(call, secrets_);
    const auto status = library_.Perform(call);
    return status && Keep(std::move(line), call, *status);
}

bool CallRecorder::PerformGuess(const tavrolib::Call& call) {
    // The library may change the record that tells them.
    std::string key = tavrosim::AnswerKey(call);
    tavrolib::Json line = CallToJson(call, secrets_);
    if (made_.contains(key) || library_.Perform(call) != 0U) {
        return false;
    }
    made_.insert(std::move(key));
    return Keep(std::move(line), call, 0);
}

bool CallRecorder::Keep(tavrolib::Json line, const tavrolib::Call& call, std::uint32_t status) {
    const bool isDone = status == 0;
    const auto error = isDone ? std::nullopt : library_.LastError();
    line["status"] = status;
    AddOutputs(line, call, error ? &*error : nullptr, secrets_);
    answers_.push_back(std::move(line));
    return isDone;
}

}  // namespace tavrohost
