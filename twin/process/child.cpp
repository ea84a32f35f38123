#include "twin/process/child.h"

#include <nlohmann/json.hpp>

#include "library/platform/environment.h"
#include "library/platform/file.h"
#include "twin/exit_status.h"
#include "twin/platform/environment.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

constexpr const char* FolderVariable = "TAVROHOST_JOB";

// The name under which the child runs, as people know the program.
constexpr const char* ProgramName = "tavrocli";

std::filesystem::path JobFileIn(const std::filesystem::path& folder) {
    return folder / "job.json";
}

}  // namespace

std::filesystem::path OutputFileIn(const std::filesystem::path& folder) {
    return folder / "output";
}

platform::ChildEnd RunChild(const PrivateFolder& folder, const ChildJob& job) {
    const Json content{
        {"mode", job.mode}, {"details", job.details}, {"parent", platform::ThisProcess()}};
    tavrolib::platform::ReplaceContent(JobFileIn(folder.Path()), tavrolib::LineOf(content));
    platform::ChildCommand command{.arguments = {ProgramName},
                                   .variable = {FolderVariable, folder.Path()},
                                   .outputFile = {},
                                   .timeLimit = job.timeLimit};
    command.arguments.insert(command.arguments.end(), job.arguments.begin(), job.arguments.end());
    if (job.keepsOutput) {
        command.outputFile = OutputFileIn(folder.Path());
    }
    return platform::RunThisProgram(command);
}

std::string TellEnd(const platform::ChildEnd& end) {
    switch (end.kind) {
        case platform::EndKind::TimedOut:
            return "did not end in time and was stopped";
        case platform::EndKind::Crashed:
            return platform::TellCrash(end.code);
        case platform::EndKind::Exited:
            break;
    }
    return "ended with exit status " + std::to_string(end.code);
}

std::optional<ReceivedJob> ReceiveJob() {
    const auto folder = tavrolib::platform::PathVariable(FolderVariable);
    platform::UnsetVariable(FolderVariable);
    if (!folder) {
        return std::nullopt;
    }
    const auto content = tavrolib::platform::ReadWholeFile(JobFileIn(*folder));
    if (!content) {
        throw TroubleError(std::string("the folder in ") + FolderVariable + " holds no job");
    }
    const Json job = tavrolib::ParseJson(*content);
    platform::EndWithParent(job.value("parent", std::int64_t{}));
    return ReceivedJob{.mode = job.value("mode", std::string()),
                       .details = job.value("details", Json::object()),
                       .folder = *folder};
}

}  // namespace tavrohost
