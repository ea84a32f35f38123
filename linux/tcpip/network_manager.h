#pragma once

#include <optional>
#include <string>

#include "linux/inventory/machine.h"
#include "linux/system/roots.h"

namespace tavrolinux {

// The network manager that owns the interface, by its name, as its state under /run or its
// configuration under /etc says; nothing where none does.
std::optional<std::string> ManagerOf(const Roots& roots, const Interface& interface);

}  // namespace tavrolinux
