#include "twin/capture/recorder.h"

#include <utility>

#include "simulator/host/lookup.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

// What a captured answer is found by: identifiers that differ in case or separators are one.
std::string IdentityOf(Json line) {
    const auto request = line.find("request");
    if (request != line.end()) {
        std::string normal = tavrosim::NormalIdentifier(request->get_ref<const std::string&>());
        if (!normal.empty()) {
            *request = std::move(normal);
        }
    }
    return tavrolib::LineOf(line);
}

}  // namespace

bool CallRecorder::Perform(const tavrolib::Call& call) {
    Json line = CallToJson(call, secrets_);
    if (!IsNew(line)) {
        return false;
    }
    const auto status = library_.Perform(call);
    return status && Keep(std::move(line), call, *status);
}

bool CallRecorder::IsNew(const Json& line) {
    return made_.insert(IdentityOf(line)).second;
}

bool CallRecorder::Keep(Json line, const tavrolib::Call& call, std::uint32_t status) {
    const bool isDone = status == 0;
    const auto error = isDone ? std::nullopt : library_.LastError();
    line["status"] = status;
    AddOutputs(line, call, error ? &*error : nullptr, secrets_);
    answers_.push_back(std::move(line));
    return isDone;
}

}  // namespace tavrohost
