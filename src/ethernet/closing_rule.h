#pragma once

#include <string_view>

#include "console/console.h"

namespace tavro {

// Prints the line that ends a display of the Ethernet commands: a tab and the rule.
inline void PrintClosingRule(std::wstring_view rule) {
    console::PrintNarrow("\t");
    console::PrintLine(rule);
}

}  // namespace tavro
