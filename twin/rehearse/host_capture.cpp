#include "twin/rehearse/host_capture.h"

#include <nlohmann/json.hpp>
#include <string>

#include "simulator/answers/captured_answers.h"
#include "twin/capture/capture_host.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

bool IsInventory(const Json& answer) {
    const Json& call = answer.at("call");
    return call == "GetDiscoveredAdapters" || call == "GetPortWWNs";
}

// The library's words for a refusal; empty when it has none.
std::string WordsOf(const Json& answer) {
    const Json error = answer.value("error", Json::object());
    const std::string message = error.value("message", "");
    return message.empty() ? "" : ": " + message;
}

// Without its inventory a host would be a twin without functions, which refuses everything.
void WantInventory(const Json& answers) {
    bool isListed = false;
    for (const Json& answer : answers) {
        if (!IsInventory(answer)) {
            continue;
        }
        isListed = true;
        if (answer.value("status", 0U) != 0) {
            throw TroubleError("the library does not tell the host's adapters (" +
                               answer.at("call").get<std::string>() + ")" + WordsOf(answer));
        }
    }
    if (!isListed) {
        throw TroubleError("the library does not tell the host's adapters");
    }
}

}  // namespace

tavrosim::Host CaptureFor(const ProgramJob& job) {
    Capture capture = CaptureHost({.library = job.library, .timeLimit = job.timeLimit});
    for (const std::string& omission : capture.omissions) {
        Complain("not in the model: " + omission);
    }
    WantInventory(capture.host.captured->AsJson().at("answers"));
    return std::move(capture.host);
}

}  // namespace tavrohost
