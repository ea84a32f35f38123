#include "twin/run/program_run.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "cli/command_line.h"
#include "cli/login_options.h"
#include "dispatch.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "twin/process/child.h"
#include "twin/run/program_child.h"
#include "twin/run/verdict.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

constexpr std::int64_t Format = 1;

constexpr struct {
    RunOutcome outcome;
    const char* name;
    ExitStatus status;
} Outcomes[] = {
    {RunOutcome::Done, "done", Success},
    {RunOutcome::Refused, "refused", Negative},
    {RunOutcome::Failed, "failed", Trouble},
};

const auto& RowOf(RunOutcome outcome) {
    return *std::ranges::find(Outcomes, outcome, [](const auto& row) { return row.outcome; });
}

// The arguments as the grammar takes them, with a name for the program in front.
std::vector<const char*> WithProgramName(const std::vector<std::string>& arguments) {
    std::vector<const char*> words{""};
    for (const std::string& argument : arguments) {
        words.push_back(argument.c_str());
    }
    return words;
}

// Why the run has failed; empty when it came to its end.
std::string FailureOf(const platform::ChildEnd& end, const Journal& journal) {
    if (journal.trouble) {
        return *journal.trouble;
    }
    if (end.kind != platform::EndKind::Exited || end.code != 0) {
        return "the command " + TellEnd(end);
    }
    if (journal.noLibrary) {
        return "cannot load " + *journal.noLibrary;
    }
    if (!journal.isWhole) {
        return "the command ended early, or what it did could not be written down";
    }
    return {};
}

// Kept output in valid UTF-8, whatever a library wrote into it.
std::string KeptOutputIn(const std::filesystem::path& folder) {
    const auto bytes = tavrolib::platform::ReadWholeFile(OutputFileIn(folder));
    return bytes ? tavrolib::Utf8FromWide(tavrolib::WideFromUtf8(*bytes)) : std::string();
}

// Where the login options of a command begin among the arguments; nothing when it has none.
std::optional<std::size_t> FirstLoginOption(const tavro::Command& command) {
    const auto elements = command.form.Elements();
    const auto found = std::ranges::find_if(elements, [](const tavro::FormElement& element) {
        return element.operand != nullptr &&
               element.operand->kind == tavro::OperandKind::LoginOptions;
    });
    return found == elements.end() ? std::nullopt
                                   : std::optional<std::size_t>(found - elements.begin());
}

}  // namespace

RunReport RunProgram(const ProgramJob& job) {
    const PrivateFolder folder;
    const bool keepsOutput = job.output == OutputUse::Keep;
    const platform::ChildEnd end = RunChild(folder, {.mode = ProgramMode,
                                                     .details = DetailsOf(job),
                                                     .arguments = job.arguments,
                                                     .keepsOutput = keepsOutput,
                                                     .timeLimit = job.timeLimit});
    Journal journal = ReadJournal(JournalFileIn(folder.Path()));
    RunReport report{.failure = FailureOf(end, journal),
                     .output = keepsOutput ? KeptOutputIn(folder.Path()) : std::string()};
    const Verdict verdict = Judge(CommandOf(job.arguments).decidedBy, journal.calls);
    report.restartRequired = verdict.restartRequired;
    if (report.failure.empty()) {
        report.outcome = verdict.isDone ? RunOutcome::Done : RunOutcome::Refused;
    }
    if (report.outcome != RunOutcome::Done && verdict.lastFailure &&
        verdict.lastFailure == journal.errorCall) {
        report.error = std::move(journal.error);
    }
    report.calls = std::move(journal.calls);
    return report;
}

const tavro::Command& CommandOf(const std::vector<std::string>& arguments) {
    return *tavro::FindCommand(
        tavro::ParseCommandLine(WithProgramName(arguments), tavro::Commands()));
}

ExitStatus StatusOf(RunOutcome outcome) {
    return RowOf(outcome).status;
}

std::vector<std::string> ShownArguments(const std::vector<std::string>& arguments) {
    const std::optional<std::size_t> first = FirstLoginOption(CommandOf(arguments));
    std::vector<std::string> shown;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        const bool mayBeSecret =
            first && index >= *first && argument != "-debug" && !tavro::IsLoginOption(argument);
        shown.push_back(mayBeSecret ? "***" : tavrolib::Utf8FromBytes(argument));
    }
    return shown;
}

Json ReportJson(const ProgramJob& job, const RunReport& report) {
    Json json{{"format", Format},
              {"arguments", ShownArguments(job.arguments)},
              {"outcome", RowOf(report.outcome).name},
              {"restart_required", report.restartRequired}};
    if (!report.failure.empty()) {
        json["failure"] = report.failure;
    }
    if (job.output == OutputUse::Keep) {
        json["output"] = report.output;
    }
    json["calls"] = Json::array();
    for (const WatchedCall& call : report.calls) {
        json["calls"].push_back(JsonOf(call));
    }
    if (report.error) {
        json["error"] = *report.error;
    }
    return json;
}

}  // namespace tavrohost
