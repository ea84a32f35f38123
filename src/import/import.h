#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

// The command that imports a configuration.
std::span<const Command> ImportCommands();

}  // namespace tavro
