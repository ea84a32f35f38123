#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "library/platform/file.h"
#include "platform/output.h"
#include "simulator/host/host_file.h"
#include "twin/capture/capture_host.h"
#include "twin/commands/commands.h"
#include "twin/commands/run_options.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

struct CaptureOptions {
    std::string output{StandardStream};
    bool withSecrets = false;
    bool isAnonymous = false;
    std::string libraryFile;
    std::optional<int> timeLimit;
};

void WriteCapture(const CaptureOptions& options) {
    const Capture capture =
        CaptureHost({.library = ChosenLibrary(options.libraryFile),
                     .withSecrets = options.withSecrets,
                     .isAnonymous = options.isAnonymous,
                     .tellsProgress = tavro::platform::StandardErrorIsTerminal(),
                     .timeLimit = TimeLimit(options.timeLimit)});
    for (const std::string& omission : capture.omissions) {
        Complain("not in the model: " + omission);
    }
    const std::string text = tavrosim::TextFromHost(capture.host);
    if (text.size() > tavrolib::platform::LargestFile) {
        throw TroubleError("the captured host is larger than 64 MiB");
    }
    WriteDocument(options.output, text);
}

}  // namespace

void AddCaptureCommand(CLI::App& tool, int& /*status*/) {
    CLI::App* command = tool.add_subcommand(
        "capture", "Copy the host that the management library manages to a host file");
    const auto options = std::make_shared<CaptureOptions>();
    command->add_option("-o,--output", options->output, "The host file; - is standard output")
        ->type_name("FILE")
        ->check(NotEmpty());
    command->add_flag("--with-secrets", options->withSecrets,
                      "Keep the secrets that the library tells");
    command->add_flag("--anonymous", options->isAnonymous,
                      "Replace names, addresses, WWNs and serial numbers by stand-ins");
    AddLibraryOption(*command, options->libraryFile);
    AddTimeoutOption(*command, options->timeLimit);
    command->callback([options] { WriteCapture(*options); });
}

}  // namespace tavrohost
