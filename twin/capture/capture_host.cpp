#include "twin/capture/capture_host.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "library/platform/file.h"
#include "platform/crash_dump.h"
#include "simulator/host/host_file.h"
#include "twin/anonymous/stand_ins.h"
#include "twin/capture/capture_child.h"
#include "twin/capture/model.h"
#include "twin/exit_status.h"
#include "twin/process/child.h"
#include "twin/process/private_folder.h"
#include "twin/run/library_source.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

// What the child left; the folder is gone when this returns.
Json ResultOfChild(const CaptureJob& job) {
    const PrivateFolder folder;
    const platform::ChildEnd end =
        RunChild(folder, {.mode = CaptureMode,
                          .details = {{capture_details::Library, JsonOf(job.library)},
                                      {capture_details::WithSecrets, job.withSecrets},
                                      {capture_details::TellsProgress, job.tellsProgress}},
                          .arguments = {},
                          .keepsOutput = false,
                          .timeLimit = job.timeLimit});
    const auto content = tavrolib::platform::ReadWholeFile(AnswersFileIn(folder.Path()));
    if (end.kind != platform::EndKind::Exited || end.code != 0 || !content) {
        throw TroubleError("the capture " + TellEnd(end));
    }
    return tavrolib::ParseJson(*content);
}

}  // namespace

Capture CaptureHost(const CaptureJob& job) {
    tavro::platform::ForbidCrashDumps();  // what the child tells may hold secrets
    Json result = ResultOfChild(job);
    if (result.contains("trouble")) {
        throw TroubleError(result["trouble"].get<std::string>());
    }
    const Json answers = std::move(result.at("answers"));
    return CaptureFrom(job.isAnonymous ? WithStandIns(answers) : answers);
}

Capture CaptureFrom(const Json& answers) {
    CapturedModel model = ModelFrom(Told(answers));
    return {.host = tavrosim::CapturedHost(model.host, answers),
            .omissions = std::move(model.omissions)};
}

}  // namespace tavrohost
