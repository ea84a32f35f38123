#include "twin/rehearse/host_capture.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simulator/answers/captured_answers.h"
#include "twin/capture/capture_host.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

// The library's words for a refusal; empty when it has none.
std::string WordsOf(const Json& answer) {
    const Json error = answer.value("error", Json::object());
    const std::string message = error.value("message", "");
    return message.empty() ? "" : ": " + message;
}

std::string TextIn(const Json& answer, const char* name) {
    return answer.value(name, std::string());
}

// Without its inventory a host would be a twin without functions, which refuses everything. One
// port that is not told leaves the others to rehearse on.
void WantInventory(const Json& answers) {
    bool isListed = false;
    bool isPortTold = false;
    std::vector<std::string> refusals;
    for (const Json& answer : answers) {
        const Json& call = answer.at("call");
        const bool isRefused = answer.value("status", 0U) != 0;
        if (call == "GetDiscoveredAdapters") {
            if (isRefused) {
                throw TroubleError(
                    "the library does not tell the host's adapters (GetDiscoveredAdapters)" +
                    WordsOf(answer));
            }
            isListed = true;
        } else if (call == "GetPortWWNs" && isRefused) {
            refusals.push_back("the library does not tell " + TextIn(answer, "port") + " of " +
                               TextIn(answer, "adapter") + " (GetPortWWNs)" + WordsOf(answer));
        } else if (call == "GetPortWWNs") {
            isPortTold = true;
        }
    }
    if (!isListed) {
        throw TroubleError("the library does not tell the host's adapters");
    }
    if (!refusals.empty() && !isPortTold) {
        throw TroubleError(refusals.front());
    }
    std::ranges::for_each(refusals, [](const std::string& refusal) { Complain(refusal); });
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
