#pragma once

#include <string>
#include <vector>

namespace completions {

// The commands of `tavrohost`, one line each, its words separated by one blank:
//   run --plan:file --json --timeout:number --help --
// First the command's name, then in any order its options, with what is behind them as ":file",
// ":number" or nothing, and the short names of those with a value, which are there for that value
// and need not be offered; <file> for each file that it works on; the words of which one is typed;
// and "--" when a command line of `tavrocli` stands behind that. The options of `tavrohost` itself
// stand in a last line that has no command: "- --help --version".
std::vector<std::string> HostCommands();

}  // namespace completions
