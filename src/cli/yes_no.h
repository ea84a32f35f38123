#pragma once

#include <string>

namespace tavro {

// True for "y" or "Y", false for "n" or "N". While the answer is anything else, asks for one of
// them and reads another line.
bool AskYesNo(std::string answer);

}  // namespace tavro
