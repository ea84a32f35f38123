#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "library/text/text.h"
#include "simulator/host/host_file.h"
#include "twin/commands/commands.h"
#include "twin/commands/program_arguments.h"
#include "twin/commands/run_options.h"
#include "twin/documents/document.h"
#include "twin/documents/host_document.h"
#include "twin/documents/json_text.h"
#include "twin/exit_status.h"
#include "twin/rehearse/host_capture.h"
#include "twin/rehearse/plan.h"
#include "twin/rehearse/rehearsal.h"
#include "twin/run/secrets.h"

namespace tavrohost {
namespace {

struct RehearseOptions {
    std::string hostFile;
    std::string planFile;
    std::string twinFile;
    bool json = false;
    std::string answersFile;
    std::string libraryFile;
    std::optional<int> timeLimit;
};

// A plan holds all that was answered, so nothing may be typed.
const char* const NoAnswers = R"({"format": 1, "answers": []})";

std::vector<std::string> AsText(std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
        argument = tavrolib::Utf8FromBytes(argument);
    }
    return arguments;
}

// Whether the command does what a file beside it says, which may be another one by the time of a
// plan.
bool ReadsFile(const std::vector<std::string>& arguments) {
    return CommandOf(arguments).form.elements.front().word == "-import";
}

ProgramJob JobOf(const RehearseOptions& options) {
    ProgramJob job{.arguments = NeededProgramArguments(),
                   .library = ChosenLibrary(options.libraryFile),
                   .answers = ReadAnswers(options.answersFile),
                   .output = options.json ? OutputUse::Keep : OutputUse::PassThrough,
                   .timeLimit = TimeLimit(options.timeLimit)};
    if (options.planFile.empty()) {
        return job;
    }
    if (options.planFile == StandardStream) {
        throw TroubleError("a plan is a file");
    }
    if (ReadsFile(job.arguments)) {
        throw TroubleError(
            "what an import does stands in the file that it reads, which no plan can hold");
    }
    if (ShownArguments(job.arguments) != AsText(job.arguments)) {
        throw TroubleError(
            "the arguments hold a word that may be a secret, which no plan may hold");
    }
    if (!job.answers) {
        job.answers = tavrolib::ParseJson(NoAnswers);
    }
    return job;
}

void Save(const std::string& file, const ProgramJob& job, const Rehearsal& rehearsal) {
    if (rehearsal.report.outcome != RunOutcome::Done) {
        Complain("no plan was saved, since the command was not done on the twin");
        return;
    }
    WriteDocument(file, TextFromPlan({.arguments = job.arguments,
                                      .answers = job.answers.value(),
                                      .operations = OperationsOf(rehearsal.report.calls),
                                      .restartRequired = rehearsal.report.restartRequired,
                                      .before = rehearsal.before,
                                      .after = rehearsal.after}));
}

int RunRehearsal(const RehearseOptions& options) {
    const ProgramJob job = JobOf(options);
    HostDocument start;
    if (options.hostFile.empty()) {
        start.host = CaptureFor(job);
    } else {
        start = ReadHostDocument(options.hostFile);
    }
    const Rehearsal rehearsal = Rehearse(job, start.host);
    if (options.json) {
        const tavrolib::Json document =
            start.text.empty() ? tavrolib::Json() : tavrolib::ParseJson(start.text);
        WriteOutput(
            JsonText(RehearsalJson(job, rehearsal, start.text.empty() ? nullptr : &document)));
    } else if (rehearsal.report.outcome != RunOutcome::Failed) {
        WriteOutput(TextOf(rehearsal));
    }
    if (!rehearsal.report.failure.empty()) {
        Complain(rehearsal.report.failure);
    }
    if (!options.twinFile.empty()) {
        WriteDocument(options.twinFile,
                      TextFromHost(WithoutNewSecrets(rehearsal.after, rehearsal.before)));
    }
    if (!options.planFile.empty()) {
        Save(options.planFile, job, rehearsal);
    }
    return StatusOf(rehearsal);
}

}  // namespace

void AddRehearseCommand(CLI::App& tool, int& status) {
    CLI::App* command = tool.add_subcommand(
        "rehearse", "Do a command of tavrocli on a twin of the host, and show what it changes");
    const auto options = std::make_shared<RehearseOptions>();
    command
        ->add_option("--host", options->hostFile, "The host file of the twin, instead of a capture")
        ->type_name("FILE")
        ->check(NotEmpty());
    command->add_option("--save", options->planFile, "Keep the rehearsal, to be run by run --plan")
        ->type_name("PLAN")
        ->check(NotEmpty());
    command->add_option("--keep", options->twinFile, "Keep the twin afterwards as a host file")
        ->type_name("FILE")
        ->check(NotEmpty());
    command->add_flag("--json", options->json, "Tell all about it as JSON");
    AddAnswersOption(*command, options->answersFile);
    AddLibraryOption(*command, options->libraryFile);
    AddTimeoutOption(*command, options->timeLimit);
    command->footer(
        "The arguments of tavrocli stand behind --, as in\n"
        "  tavrohost rehearse -- -npar 02-00-5E-10-00-00 -set");
    command->callback([options, &status] { status = RunRehearsal(*options); });
}

}  // namespace tavrohost
