#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrohost {

// Whether the command of this name runs the program: the arguments of the program stand behind its
// own.
bool TakesProgramArguments(std::string_view command);

// The command line of the program, for commands that run one: what stands behind "--", untouched.
// Nothing when there is no "--". Set before the command is chosen.
std::optional<std::vector<std::string>>& ProgramArguments();

// Cuts what belongs to ProgramArguments off the tool's own arguments, its name first, when they
// name a command that runs the program.
void TakeProgramArguments(std::vector<std::string>& toolArguments);

// The command line of the program; throws TroubleError when there is none.
const std::vector<std::string>& NeededProgramArguments();

}  // namespace tavrohost
