#pragma once

#include <span>

#include "cli/command.h"

namespace tavro {

// The command that lists the host's adapters.
std::span<const Command> ListingCommands();

}  // namespace tavro
