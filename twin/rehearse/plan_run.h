#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simulator/host/host.h"
#include "twin/diff/difference.h"
#include "twin/rehearse/plan.h"
#include "twin/run/program_run.h"

namespace tavrohost {

// What became of a plan on a host.
struct PlanRun {
    // What has changed since the rehearsal where the plan works; nothing is run then.
    std::vector<Change> drift;
    RunReport report;  // when it was run
    // Whether the library did the same operations with the same outcomes as the twin.
    bool hasSameCourse = false;
    // Where the host is another one afterwards than the twin was: the twin as before, the host as
    // after.
    std::vector<Change> deviations;
    // Why the host could not be captured afterwards, in UTF-8; empty when it could.
    std::string unknownEnd;

    bool IsRun() const { return drift.empty(); }
    bool IsAsRehearsed() const {
        return IsRun() && report.outcome == RunOutcome::Done && hasSameCourse &&
               deviations.empty() && unknownEnd.empty();
    }
};

// How a plan reaches the host.
struct PlanSteps {
    std::function<tavrosim::Host()> capture;  // before the command and after it
    std::function<void()> begin;     // once it is certain that the command will run, before it does
    std::function<RunReport()> run;  // runs the plan's command, with its answers
};

// Does the plan on the host. Throws what the steps throw, but for a capture afterwards.
PlanRun RunPlan(const Plan& plan, const PlanSteps& steps);

// A plan for one run, and what notes in its file, under a lock, that it is used. That throws
// TroubleError when the plan was used meanwhile, or another one stands there.
struct TakenPlan {
    Plan plan;
    std::function<void()> markUsed;
};

// Reads the plan of that file. Throws TroubleError when there is no such file, it holds no plan, or
// the plan is used already.
TakenPlan TakePlan(const std::string& name);

// The exit status that tells of a run: yes only when it was done, and as rehearsed.
ExitStatus StatusOf(const PlanRun& run);

// What people are told of it after the command's own output.
std::string TextOf(const PlanRun& run);

// The run as the document that docs/run.schema.json describes, with its member "plan".
tavrolib::Json PlanRunJson(const ProgramJob& job, const PlanRun& run);

}  // namespace tavrohost
