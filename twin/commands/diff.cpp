#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "twin/commands/commands.h"
#include "twin/commands/run_options.h"
#include "twin/commands/show_difference.h"
#include "twin/diff/difference.h"
#include "twin/documents/document.h"
#include "twin/documents/host_document.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

struct DiffArguments {
    std::string before;
    std::string after;
    bool asPatch = false;
    DiffOptions options;
};

int Diff(const DiffArguments& arguments) {
    if (arguments.before == StandardStream && arguments.after == StandardStream) {
        throw TroubleError("standard input can be only one of the files");
    }
    const HostDocument before = ReadHostDocument(arguments.before);
    const HostDocument after = ReadHostDocument(arguments.after);
    const Difference difference = DifferenceOf(before.host, after.host, arguments.options);
    ShowDifference(before, difference, arguments.asPatch);
    return difference.changes.empty() ? Success : Negative;
}

}  // namespace

void AddDiffCommand(CLI::App& tool, int& status) {
    const auto arguments = std::make_shared<DiffArguments>();
    CLI::App* command = tool.add_subcommand("diff", "Show what differs between two host files");
    command->add_option("A", arguments->before, "The host file of before, or \"-\"")
        ->required()
        ->check(NotEmpty());
    command->add_option("B", arguments->after, "The host file of after, or \"-\"")
        ->required()
        ->check(NotEmpty());
    CLI::Option* const json = command->add_flag("--json", arguments->asPatch,
                                                "Show it as JSON Patch, which makes B of A");
    command->add_flag("--counters", arguments->options.counters,
                      "Compare counters and the last session number, too");
    command
        ->add_flag("--with-secrets", arguments->options.withSecrets,
                   "Put secrets into the JSON Patch")
        ->needs(json);
    command->callback([arguments, &status] { status = Diff(*arguments); });
}

}  // namespace tavrohost
