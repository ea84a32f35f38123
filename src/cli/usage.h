#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

// The commands that show the program's own screens.
std::span<const Command> ScreenCommands();

}  // namespace tavro
