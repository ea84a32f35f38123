#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "twin/commands/commands.h"
#include "twin/commands/program_arguments.h"
#include "twin/commands/run_options.h"
#include "twin/documents/document.h"
#include "twin/documents/json_text.h"
#include "twin/exit_status.h"
#include "twin/rehearse/host_capture.h"
#include "twin/rehearse/plan_run.h"
#include "twin/run/program_run.h"

namespace tavrohost {
namespace {

struct Options {
    std::string planFile;
    bool json = false;
    std::string answersFile;
    std::string libraryFile;
    std::optional<int> timeLimit;
};

ProgramJob JobOf(const Options& options) {
    return {.arguments = NeededProgramArguments(),
            .library = ChosenLibrary(options.libraryFile),
            .answers = ReadAnswers(options.answersFile),
            .output = options.json ? OutputUse::Keep : OutputUse::PassThrough,
            .timeLimit = TimeLimit(options.timeLimit)};
}

void ComplainOf(const RunReport& report) {
    if (!report.failure.empty()) {
        Complain(report.failure);
    }
}

int Run(const Options& options) {
    const ProgramJob job = JobOf(options);
    const RunReport report = RunProgram(job);
    if (options.json) {
        WriteOutput(JsonText(ReportJson(job, report)));
    }
    ComplainOf(report);
    return StatusOf(report.outcome);
}

// The command and its answers are the plan's.
int RunThePlan(const Options& options) {
    if (ProgramArguments()) {
        throw TroubleError("with --plan, the arguments of tavrocli are those of the plan");
    }
    const TakenPlan taken = TakePlan(options.planFile);
    ProgramArguments() = taken.plan.arguments;
    ProgramJob job = JobOf(options);
    job.answers = taken.plan.answers;
    const PlanRun run = RunPlan(taken.plan, {.capture = [&job] { return CaptureFor(job); },
                                             .begin = taken.markUsed,
                                             .run = [&job] { return RunProgram(job); }});
    if (options.json) {
        WriteOutput(JsonText(PlanRunJson(job, run)));
    } else {
        WriteOutput(TextOf(run));
    }
    ComplainOf(run.report);
    if (!run.unknownEnd.empty()) {
        Complain(run.unknownEnd);
    }
    return StatusOf(run);
}

}  // namespace

void AddRunCommand(CLI::App& tool, int& status) {
    CLI::App* command =
        tool.add_subcommand("run", "Run a command of tavrocli and tell whether it was done");
    const auto options = std::make_shared<Options>();
    CLI::Option* plan =
        command->add_option("--plan", options->planFile, "Do a rehearsal that was saved, once")
            ->type_name("PLAN")
            ->check(NotEmpty());
    command->add_flag("--json", options->json, "Tell all about it as JSON");
    AddAnswersOption(*command, options->answersFile)->excludes(plan);
    AddLibraryOption(*command, options->libraryFile);
    AddTimeoutOption(*command, options->timeLimit);
    command->footer(
        "The arguments of tavrocli stand behind --, as in\n"
        "  tavrohost run -- -showadapter");
    command->callback([options, &status] {
        status = options->planFile.empty() ? Run(*options) : RunThePlan(*options);
    });
}

}  // namespace tavrohost
