#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "library/json/json.h"
#include "simulator/host/host.h"
#include "twin/rehearse/certainty.h"

namespace tavrohost {

// A rehearsal that was kept, to be done on the real host once.
struct Plan {
    std::vector<std::string> arguments;          // of tavrocli, without its name; none is secret
    tavrolib::Json answers;                      // the answers document
    std::vector<RehearsedOperation> operations;  // in the order in which the twin served them
    bool restartRequired = false;
    tavrosim::Host before;  // the host as it was captured
    tavrosim::Host after;   // the twin after the command
    bool isUsed = false;    // whether the plan was begun on a host
};

// The plan as its document, without the secrets of its hosts.
std::string TextFromPlan(const Plan& plan);

// The plan of that document, whose answers an AnswerBook takes. Throws tavrolib::ShapeError that
// names the place of what is wrong.
Plan PlanFromText(std::string_view text);

}  // namespace tavrohost
