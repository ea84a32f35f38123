#include "twin/capture/recorder.h"

#include <utility>

#include "simulator/answers/captured_answers.h"

namespace tavrohost {

bool CallRecorder::Perform(const tavrolib::Call& call) {
    if (!IsNew(call)) {
        return false;
    }
    tavrolib::Json line = CallToJson(call, secrets_);
    const auto status = library_.Perform(call);
    return status && Keep(std::move(line), call, *status);
}

bool CallRecorder::IsNew(const tavrolib::Call& call) {
    return made_.insert(tavrosim::AnswerKey(call)).second;
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
