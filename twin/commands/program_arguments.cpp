#include "twin/commands/program_arguments.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "twin/exit_status.h"

namespace tavrohost {
namespace {

constexpr std::string_view CommandsThatRunTheProgram[] = {"run", "rehearse"};

}  // namespace

bool TakesProgramArguments(std::string_view command) {
    return std::ranges::find(CommandsThatRunTheProgram, command) !=
           std::end(CommandsThatRunTheProgram);
}

std::optional<std::vector<std::string>>& ProgramArguments() {
    static std::optional<std::vector<std::string>> arguments;
    return arguments;
}

void TakeProgramArguments(std::vector<std::string>& toolArguments) {
    if (toolArguments.size() < 2 || !TakesProgramArguments(toolArguments[1])) {
        return;
    }
    const auto separator = std::ranges::find(toolArguments, "--");
    if (separator != toolArguments.end()) {
        ProgramArguments().emplace(std::next(separator), toolArguments.end());
        toolArguments.erase(separator, toolArguments.end());
    }
}

const std::vector<std::string>& NeededProgramArguments() {
    if (!ProgramArguments()) {
        throw TroubleError("the arguments of tavrocli are missing; they stand behind --");
    }
    return *ProgramArguments();
}

}  // namespace tavrohost
