#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "twin/check/check.h"
#include "twin/commands/commands.h"
#include "twin/commands/run_options.h"
#include "twin/documents/document.h"
#include "twin/documents/host_document.h"
#include "twin/documents/json_text.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

struct CheckArguments {
    std::string file;
    bool asJson = false;
};

int Check(const CheckArguments& arguments) {
    const std::vector<HostFinding> findings = FindingsIn(ReadDocument(arguments.file));
    WriteOutput(arguments.asJson ? JsonText(JsonOfFindings(findings))
                                 : TextOfFindings(findings, NameOfDocument(arguments.file)));
    return findings.empty() ? Success : Negative;
}

}  // namespace

void AddCheckCommand(CLI::App& tool, int& status) {
    const auto arguments = std::make_shared<CheckArguments>();
    CLI::App* command = tool.add_subcommand("check", "Tell all that is wrong with a host file");
    command->add_option("FILE", arguments->file, "The host file, or \"-\"")
        ->required()
        ->check(NotEmpty());
    command->add_flag("--json", arguments->asJson, "Tell it as JSON");
    command->callback([arguments, &status] { status = Check(*arguments); });
}

}  // namespace tavrohost
