#include "twin/tool.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <string>
#include <vector>

#include "library/platform/file.h"
#include "library/session/version.h"
#include "library/text/text.h"
#include "twin/child_modes.h"
#include "twin/commands/commands.h"
#include "twin/commands/program_arguments.h"
#include "twin/documents/document.h"
#include "twin/exit_status.h"
#include "twin/platform/arguments.h"

namespace tavrohost {
namespace {

// In the order in which `--help` lists them.
constexpr void (*Commands[])(CLI::App& tool, int& status) = {
    AddCaptureCommand, AddRehearseCommand, AddRunCommand,    AddDiffCommand,
    AddCheckCommand,   AddRestartCommand,  AddSchemaCommand,
};

// What `--help` and `--version` print goes to standard output, everything else is a diagnostic.
int EndEarly(const CLI::App& tool, const CLI::ParseError& end) {
    std::ostringstream output;
    std::ostringstream diagnostics;
    const int code = tool.exit(end, output, diagnostics);
    WriteOutput(output.str());
    if (code == 0) {
        return Success;
    }
    std::string lines = diagnostics.str();
    if (lines.ends_with('\n')) {
        lines.pop_back();
    }
    Complain(lines);
    return Trouble;
}

int ParseAndRun(std::vector<std::string> arguments) {
    TakeProgramArguments(arguments);
    CLI::App tool("Captures a host, rehearses changes on its twin, and shows the differences.",
                  "tavrohost");
    int status = Success;
    AddCommandsAndOptions(tool, status);
    try {
        // The library takes them from the last to the first.
        tool.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend() - 1));
        return status;
    } catch (const CLI::ParseError& end) {
        return EndEarly(tool, end);
    }
}

}  // namespace

void AddCommandsAndOptions(CLI::App& tool, int& status) {
    tool.allow_windows_style_options(false);  // which the commands take over
    tool.require_subcommand(1);
    tool.set_version_flag("--version",
                          "tavrohost " + tavrolib::Utf8FromWide(tavrolib::LibraryVersion));
    for (const auto addCommand : Commands) {
        addCommand(tool, status);
    }
}

int RunTool(int argc, const char* const* argv) {
    try {
        if (const auto job = ReceiveJob()) {
            return RunChildMode(*job, argc, argv);
        }
        return ParseAndRun(platform::Utf8Arguments(argc, argv));
    } catch (const platform::Interrupted& interrupted) {
        return platform::EndInterrupted(interrupted);
    } catch (const tavrolib::platform::FileError& error) {
        Complain(tavrolib::Utf8FromWide(error.Text()));
    } catch (const std::exception& error) {
        Complain(error.what());
    }
    return Trouble;
}

}  // namespace tavrohost
