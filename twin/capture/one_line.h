#pragma once

#include <string>

namespace tavrohost {

// A text that a library sent as UTF-8, which ends no line of a diagnostic: each ASCII control
// character, a line end among them, is a "?".
std::string InOneLine(const std::string& bytes);

}  // namespace tavrohost
