#pragma once

namespace CLI {  // NOLINT(readability-identifier-naming): the library's own
class App;
}  // namespace CLI

namespace tavrohost {

// Adds all that tavrohost takes: its commands with their options, and its own options. A command
// that is chosen leaves its exit status in `status`, which outlives the tool.
void AddCommandsAndOptions(CLI::App& tool, int& status);

// Runs tavrohost with the parameters of the entry function and returns its exit status.
int RunTool(int argc, const char* const* argv);

}  // namespace tavrohost
