#include "completions/host_commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

#include "twin/commands/program_arguments.h"
#include "twin/tool.h"

namespace completions {
namespace {

// The words that a positional takes: those that its description has as "{one,two}". Empty when it
// takes any.
std::string ChoicesOf(const CLI::Option& positional) {
    const std::string description = positional.get_type_name();
    const auto start = description.find('{');
    const auto end = description.find('}', start);
    if (start == std::string::npos || end == std::string::npos) {
        return {};
    }
    std::string words = description.substr(start + 1, end - start - 1);
    std::ranges::replace(words, ',', ' ');
    return words;
}

std::string PositionalOf(const CLI::Option& positional) {
    const std::string choices = ChoicesOf(positional);
    return choices.empty() ? "<file>" : choices;
}

// What the command line has behind an option. Whatever is no number names a file.
std::string_view ValueOf(const CLI::Option& option) {
    if (option.get_items_expected_max() == 0) {
        return "";
    }
    return option.get_type_name().find("INT") == std::string::npos ? ":file" : ":number";
}

std::string OptionsOf(const CLI::App& command) {
    std::string words;
    for (const CLI::Option* const option : command.get_options()) {
        if (option->get_positional()) {
            words.append(" ").append(PositionalOf(*option));
        }
        const std::string_view value = ValueOf(*option);
        for (const std::string& name : option->get_lnames()) {
            words.append(" --").append(name).append(value);
        }
        for (const std::string& name : option->get_snames()) {
            if (!value.empty()) {
                words.append(" -").append(name).append(value);
            }
        }
    }
    return words;
}

}  // namespace

std::vector<std::string> HostCommands() {
    CLI::App tool("", "tavrohost");
    int status = 0;
    tavrohost::AddCommandsAndOptions(tool, status);
    std::vector<std::string> lines;
    for (const CLI::App* const command : tool.get_subcommands({})) {
        const std::string& name = command->get_name();
        lines.push_back(name + OptionsOf(*command) +
                        (tavrohost::TakesProgramArguments(name) ? " --" : ""));
    }
    lines.push_back("-" + OptionsOf(tool));
    return lines;
}

}  // namespace completions
