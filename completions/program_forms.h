#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/command.h"

namespace completions {

// What may be typed for the commands of `tavrocli`, one line for each form of a row, its words
// separated by one blank:
//   -iscsi <MAC@iSCSI> -target -login <Target_Name> <IP> <Port_Number> -mp|-hd|...
// A keyword stands for itself, with "|" between those of which one is typed. <...> is an operand,
// blanks in its name as "_"; behind "@" it says of which kind of port it is the identifier:
// "Ethernet", "iSCSI" or "FCoE" as the adapter listing has it, or "any". "..." at the end of a
// word: it may come again, up to the last argument. The debug switch stands at the end of a form
// that takes it. Rows without a form have no line.
std::vector<std::string> ProgramForms(std::span<const tavro::Command* const> commands);

}  // namespace completions
