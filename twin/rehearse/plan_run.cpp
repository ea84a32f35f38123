#include "twin/rehearse/plan_run.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "library/json/place.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "simulator/model/model.h"
#include "twin/diff/text.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"
#include "twin/rehearse/drift.h"
#include "twin/rehearse/rehearsal.h"

namespace tavrohost {
namespace {

constexpr std::chrono::seconds LockPatience{10};

Plan ReadUnusedPlan(const std::string& name) {
    if (name == StandardStream) {
        throw TroubleError("a plan is noted as used, so it cannot come from standard input");
    }
    try {
        Plan plan = PlanFromText(ReadDocument(name));
        if (plan.isUsed) {
            throw TroubleError(name + ": this plan was used; a plan is for one run");
        }
        return plan;
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
    std::erase_if(operations, [](const RehearsedOperation& operation) {
        const tavrosim::OperationModel* const model = tavrosim::FindModel(operation.code);
        return model != nullptr && (model->change == nullptr || model->tellCounters != nullptr);
    });
    return operations;
}

// What waits for the restart cannot be read from a host, so it tells nothing of what happened.
bool IsPending(const Change& change) {
    const std::string& member = change.where.member;
    const std::string_view name = std::string_view(member).substr(member.rfind('.') + 1);
    return name == "pendingPartitions" || name == "pendingPersonality" || name == "pendingVlanId";
}

// The host as it is now; where that cannot be told, the run keeps the reason.
void CompareWithRehearsal(const Plan& plan, const std::function<tavrosim::Host()>& capture,
                          PlanRun& run) {
    try {
        run.deviations =
            ChangesWithin(WorkOf(plan), plan.before, DifferenceOf(plan.after, capture()).changes);
        std::erase_if(run.deviations, IsPending);
    } catch (const tavrolib::platform::FileError& error) {
        run.unknownEnd = tavrolib::Utf8FromWide(error.Text());
    } catch (const std::exception& error) {
        run.unknownEnd = error.what();
    }
}

}  // namespace

PlanRun RunPlan(const Plan& plan, const ProgramJob& job,
                const std::function<tavrosim::Host()>& capture,
                const std::function<void()>& begin) {
    PlanRun run;
    run.drift =
        ChangesWithin(WorkOf(plan), plan.before, DifferenceOf(plan.before, capture()).changes);
    if (!run.IsRun()) {
        run.report.outcome = RunOutcome::Refused;
        return run;
    }
    begin();
    run.report = RunProgram(job);
    run.hasSameCourse =
        run.report.restartRequired == plan.restartRequired &&
        ChangingOnes(OperationsOf(run.report.calls)) == ChangingOnes(plan.operations);
    if (run.report.outcome != RunOutcome::Failed) {
        CompareWithRehearsal(plan, capture, run);
    }
    return run;
}

TakenPlan TakePlan(const std::string& name) {
    return {ReadUnusedPlan(name), [name] {
                // Under whatever name a plan is run, there is one lock for it.
                const std::filesystem::path file = tavrolib::platform::WithoutLinks(
                    std::filesystem::path(std::u8string(name.begin(), name.end())));
                std::filesystem::path lockFile = file;
                lockFile += ".lock";
                const tavrolib::platform::FileLock lock(lockFile, LockPatience, file);
                Plan fresh = ReadUnusedPlan(name);
                fresh.isUsed = true;
                WriteDocument(name, TextFromPlan(fresh));
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
