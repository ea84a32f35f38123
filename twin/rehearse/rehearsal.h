#pragma once

#include <optional>
#include <string>
#include <vector>

#include "library/json/json.h"
#include "simulator/host/host.h"
#include "twin/diff/difference.h"
#include "twin/rehearse/certainty.h"
#include "twin/run/program_run.h"

namespace tavrohost {

// What a command did on a twin.
struct Rehearsal {
    RunReport report;
    tavrosim::Host before;
    tavrosim::Host after;
    Difference difference;  // without counters and secrets
    std::vector<Doubt> doubts;

    // Whether the host will do what was asked, as far as anybody knows.
    bool IsSuccess() const { return report.outcome == RunOutcome::Done && doubts.empty(); }
};

// Runs the job on a twin of the host, made for it and gone with it, whatever library the job names.
// A secret that the command gives the twin does not come back: another text stands in its place.
// Throws what RunProgram throws, and tavrolib::ShapeError when the twin is no host afterwards.
Rehearsal Rehearse(ProgramJob job, const tavrosim::Host& host);

// The exit status that tells of a rehearsal.
ExitStatus StatusOf(const Rehearsal& rehearsal);

// The operations of a run that came back, in their order.
std::vector<RehearsedOperation> OperationsOf(const std::vector<WatchedCall>& calls);

// What people are told of a rehearsal that did not fail after the command's own output: what came
// of it, what it changed on the twin, and what is not certain. UTF-8; no secrets.
std::string TextOf(const Rehearsal& rehearsal);

// The rehearsal as the document that docs/rehearsal.schema.json describes. `hostFile` is the
// document that the host came from, which the patch is to fit; null where it was captured.
tavrolib::Json RehearsalJson(const ProgramJob& job, const Rehearsal& rehearsal,
                             const tavrolib::Json* hostFile);

// Changes as an array for such a document.
tavrolib::Json ChangesJson(const std::vector<Change>& changes);

}  // namespace tavrohost
