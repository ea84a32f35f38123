#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "library/text/text.h"
#include "simulator/store/store.h"
#include "twin/commands/commands.h"
#include "twin/commands/run_options.h"
#include "twin/commands/show_difference.h"
#include "twin/diff/difference.h"
#include "twin/documents/document.h"
#include "twin/documents/host_document.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

using tavrosim::Host;
using tavrosim::Store;

struct RestartArguments {
    std::string file;
    bool asPatch = false;
};

// What the library says of a file that it cannot use or write.
TroubleError TroubleOf(const tavroapi::ErrorRecord& error) {
    return TroubleError(
        tavrolib::Utf8FromWide(error.details.empty() ? error.message : error.details));
}

void RestartHostFile(const RestartArguments& arguments) {
    if (arguments.file == StandardStream) {
        throw TroubleError("only a file can be restarted, not standard input");
    }
    HostDocument before = ReadHostDocument(arguments.file);
    Store store({PathOfDocument(arguments.file), false});
    // What the file holds is known for sure only once nobody else can change it.
    const tavrosim::Outcome outcome = store.RestartHost(
        [&](const Host& host) { before = {.text = ReadDocument(arguments.file), .host = host}; });
    if (!outcome.IsDone()) {
        throw TroubleOf(*outcome.error);
    }
    ShowDifference(before, DifferenceOf(before.host, store.Current()), arguments.asPatch);
}

}  // namespace

void AddRestartCommand(CLI::App& tool, int& /*status*/) {
    const auto arguments = std::make_shared<RestartArguments>();
    CLI::App* command = tool.add_subcommand(
        "restart", "Put in force what waits for the restart of a host file's host");
    command->add_option("FILE", arguments->file, "The host file")->required()->check(NotEmpty());
    command->add_flag("--json", arguments->asPatch, "Show what changed as JSON Patch");
    command->callback([arguments] { RestartHostFile(*arguments); });
}

}  // namespace tavrohost
