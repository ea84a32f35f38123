#pragma once

#include <optional>
#include <string>

namespace tavro {

// True for "y" or "Y", false for "n" or "N", nothing for any other answer.
std::optional<bool> YesOrNo(const std::string& answer);

// True for "y" or "Y", false for "n" or "N". While the answer is anything else, asks for one of
// them and reads another line.
bool AskYesNo(const std::string& answer);

}  // namespace tavro
