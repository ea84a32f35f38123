#include "twin/rehearse/plan_run.h"

#include <exception>
#include <nlohmann/json.hpp>
#include <utility>

#include "library/json/place.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "twin/diff/text.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"
#include "twin/rehearse/drift.h"
#include "twin/rehearse/rehearsal.h"

namespace tavrohost {
namespace {

struct UnusedPlan {
    std::string text;
    Plan plan;
};

UnusedPlan ReadUnusedPlan(const std::string& name) {
    if (name == StandardStream) {
        throw TroubleError("a plan is noted as used, so it cannot come from standard input");
    }
    try {
        UnusedPlan unused{.text = ReadDocument(name), .plan = {}};
        unused.plan = PlanFromText(unused.text);
        if (unused.plan.isUsed) {
            throw TroubleError(name + ": this plan was used; a plan is for one run");
        }
        return unused;
    } catch (const tavrolib::ShapeError& error) {
        throw TroubleError(name + ": " + error.what());
    }
}

WorkedOn WorkOf(const Plan& plan) {
    WorkedOn worked{DifferenceOf(plan.before, plan.after).changes, {}};
    for (const RehearsedOperation& operation : plan.operations) {
        worked.functions.push_back(operation.request);
    }
    return worked;
}

std::string TextOfChanges(std::vector<Change> changes) {
    Difference difference;
    difference.changes = std::move(changes);
    return TextOf(difference);
}

// The operations that change something, in their order. What is read besides is of no account.
std::vector<RehearsedOperation> ChangingOnes(std::vector<RehearsedOperation> operations) {
    std::erase_if(operations,
                  [](const RehearsedOperation& operation) { return IsReading(operation.code); });
    return operations;
}

// The host as it is now; where that cannot be told, the run keeps the reason.
void CompareWithRehearsal(const Plan& plan, const PlanSteps& steps, PlanRun& run) {
    try {
        run.deviations = ChangesWithin(WorkOf(plan), plan.before,
                                       DifferenceOf(plan.after, steps.capture()).changes);
    } catch (const tavrolib::platform::FileError& error) {
        run.unknownEnd = tavrolib::Utf8FromWide(error.Text());
    } catch (const std::exception& error) {
        run.unknownEnd = error.what();
    }
}

}  // namespace

PlanRun RunPlan(const Plan& plan, const PlanSteps& steps) {
    PlanRun run;
    run.drift = ChangesWithin(WorkOf(plan), plan.before,
                              DifferenceOf(plan.before, steps.capture()).changes);
    if (!run.IsRun()) {
        run.report.outcome = RunOutcome::Refused;
        return run;
    }
    steps.begin();
    run.report = steps.run();
    run.hasSameCourse =
        run.report.restartRequired == plan.restartRequired &&
        ChangingOnes(OperationsOf(run.report.calls)) == ChangingOnes(plan.operations);
    if (run.report.outcome != RunOutcome::Failed) {
        CompareWithRehearsal(plan, steps, run);
    }
    return run;
}

TakenPlan TakePlan(const std::string& name) {
    const UnusedPlan taken = ReadUnusedPlan(name);
    return {taken.plan, [name, taken] {
                // Under whatever name a plan is run, there is one lock for it.
                const LockedDocument document(name);
                UnusedPlan fresh = ReadUnusedPlan(name);
                if (fresh.text != taken.text) {
                    throw TroubleError(name + ": another plan was put there meanwhile");
                }
                fresh.plan.isUsed = true;
                document.Replace(TextFromPlan(fresh.plan));
            }};
}

ExitStatus StatusOf(const PlanRun& run) {
    if (!run.unknownEnd.empty()) {
        return Trouble;
    }
    const ExitStatus status = StatusOf(run.report.outcome);
    return status == Success && !run.IsAsRehearsed() ? Negative : status;
}

std::string TextOf(const PlanRun& run) {
    if (!run.IsRun()) {
        return "Nothing was done. Since the rehearsal, the host has changed where the plan works:"
               "\n\n" +
               TextOfChanges(run.drift);
    }
    if (run.report.outcome == RunOutcome::Failed) {
        return "\nThe run failed; what it did to the host is not known.\n";
    }
    if (run.IsAsRehearsed()) {
        return "\nWhat happened is what was rehearsed.\n";
    }
    std::string text = run.report.outcome == RunOutcome::Done
                           ? "\nThe command was done.\n"
                           : "\nThe host refused what the twin did.\n";
    if (!run.unknownEnd.empty()) {
        return text + "What became of the host is not known, since it could not be captured.\n";
    }
    if (!run.hasSameCourse) {
        text += "The library answered otherwise than the twin.\n";
    }
    if (!run.deviations.empty()) {
        text += "The host is another one than was rehearsed (rehearsed → happened):\n\n" +
                TextOfChanges(run.deviations);
    }
    return text;
}

tavrolib::Json PlanRunJson(const ProgramJob& job, const PlanRun& run) {
    using tavrolib::Json;
    Json json = ReportJson(job, run.report);
    Json& plan = json["plan"] = Json::object();
    plan["run"] = run.IsRun();
    if (run.unknownEnd.empty()) {
        plan["as_rehearsed"] = run.IsAsRehearsed();
    } else {
        plan["unknown"] = run.unknownEnd;
    }
    plan["changes"] = ChangesJson(run.IsRun() ? run.deviations : run.drift);
    return json;
}

}  // namespace tavrohost
