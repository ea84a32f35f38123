#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "twin/commands/commands.h"
#include "twin/commands/program_arguments.h"
#include "twin/commands/run_options.h"
#include "twin/documents/document.h"
#include "twin/run/program_run.h"

namespace tavrohost {
namespace {

struct Options {
    bool json = false;
    std::string answersFile;
    std::string libraryFile;
    std::optional<int> timeLimit;
};

int Run(const Options& options) {
    const ProgramJob job{.arguments = NeededProgramArguments(),
                         .library = ChosenLibrary(options.libraryFile),
                         .answers = ReadAnswers(options.answersFile),
                         .output = options.json ? OutputUse::Keep : OutputUse::PassThrough,
                         .timeLimit = TimeLimit(options.timeLimit)};
    const RunReport report = RunProgram(job);
    if (options.json) {
        constexpr int Indent = 2;
        WriteOutput(ReportJson(job, report).dump(Indent) + '\n');
    }
    if (!report.failure.empty()) {
        Complain(report.failure);
    }
    return StatusOf(report.outcome);
}

}  // namespace

void AddRunCommand(CLI::App& tool, int& status) {
    CLI::App* command =
        tool.add_subcommand("run", "Run a command of tavrocli and tell whether it was done");
    const auto options = std::make_shared<Options>();
    command->add_flag("--json", options->json, "Tell all about it as JSON");
    AddAnswersOption(*command, options->answersFile);
    AddLibraryOption(*command, options->libraryFile);
    AddTimeoutOption(*command, options->timeLimit);
    command->footer(
        "The arguments of tavrocli stand behind --, as in\n"
        "  tavrohost run -- -showadapter");
    command->callback([options, &status] { status = Run(*options); });
}

}  // namespace tavrohost
