#pragma once

namespace CLI {
class App;
}  // namespace CLI

// The commands of tavrohost, one source file each.
namespace tavrohost {

// Adds a command with its options to the tool. When it is chosen, it runs while the command line is
// taken in, and leaves its exit status in `status`; what it cannot do it throws as TroubleError.
// Both references outlive the command.
void AddCaptureCommand(CLI::App& tool, int& status);
void AddDiffCommand(CLI::App& tool, int& status);
void AddCheckCommand(CLI::App& tool, int& status);
void AddRehearseCommand(CLI::App& tool, int& status);
void AddRestartCommand(CLI::App& tool, int& status);
void AddRunCommand(CLI::App& tool, int& status);
void AddSchemaCommand(CLI::App& tool, int& status);

}  // namespace tavrohost
