#include "twin/rehearse/rehearsal.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <span>
#include <utility>

#include "library/calls/operations.h"
#include "library/json/place.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "platform/crash_dump.h"
#include "simulator/host/host_file.h"
#include "twin/diff/fitted_patch.h"
#include "twin/diff/text.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

// "LogInToTarget (11)".
std::string NameOfOperation(std::uint32_t code) {
    const tavrolib::Operation* const operation = tavrolib::FindOperation(code);
    const std::string number = std::to_string(code);
    return operation == nullptr ? "operation " + number
                                : std::string(operation->name) + " (" + number + ')';
}

std::string Shown(const std::string& bytes) {
    return tavrolib::Utf8FromBytes(bytes);
}

const char* KindName(Change::Kind kind) {
    switch (kind) {
        case Change::Kind::Added:
            return "added";
        case Change::Kind::Removed:
            return "removed";
        case Change::Kind::Changed:
            break;
    }
    return "changed";
}

// What came of the command on the twin, in one sentence.
std::string Conclusion(const Rehearsal& rehearsal) {
    if (rehearsal.report.outcome != RunOutcome::Done) {
        return "On the twin, the command was refused, or nothing was asked of the library.";
    }
    const std::string done =
        rehearsal.report.restartRequired
            ? "On the twin, the command was done; it takes effect at the restart"
            : "On the twin, the command was done";
    return done +
           (rehearsal.doubts.empty() ? "." : ". Whether the host does the same is not certain.");
}

std::string TextOfDoubt(const Doubt& doubt) {
    std::string text = NameOfOperation(doubt.operation);
    if (!doubt.request.empty()) {
        text += " of " + Shown(doubt.request);
    }
    return text + ": " + doubt.reason;
}

}  // namespace

Rehearsal Rehearse(ProgramJob job, const tavrosim::Host& host) {
    tavro::platform::ForbidCrashDumps();  // before a secret is asked for
    const PrivateFolder folder;
    const std::filesystem::path file = folder.Path() / "host.json";
    tavrolib::platform::ReplaceContent(file, TextFromHost(host));
    job.library = {LibraryChoice::Kind::Twin, file};
    Rehearsal rehearsal;
    rehearsal.report = RunProgram(job);
    rehearsal.before = host;
    rehearsal.after = host;
    if (const auto text = tavrolib::platform::ReadWholeFile(file)) {
        rehearsal.after = tavrosim::HostFromText(*text);
    }
    rehearsal.difference = DifferenceOf(rehearsal.before, rehearsal.after);
    rehearsal.doubts =
        DoubtsAbout(OperationsOf(rehearsal.report.calls), rehearsal.before, rehearsal.after);
    return rehearsal;
}

ExitStatus StatusOf(const Rehearsal& rehearsal) {
    return rehearsal.report.outcome == RunOutcome::Failed ? Trouble
           : rehearsal.IsSuccess()                        ? Success
                                                          : Negative;
}

std::vector<RehearsedOperation> OperationsOf(const std::vector<WatchedCall>& calls) {
    std::vector<RehearsedOperation> operations;
    for (const WatchedCall& call : calls) {
        if (call.operation && call.status) {
            operations.push_back({.code = *call.operation,
                                  .request = call.request.value_or(""),
                                  .status = *call.status,
                                  .completionCode = call.completionCode,
                                  .isIncomplete = call.isIncomplete});
        }
    }
    return operations;
}

std::string TextOf(const Rehearsal& rehearsal) {
    std::string text = "\n" + Conclusion(rehearsal) + "\n\n";
    const std::string changes = TextOf(rehearsal.difference);
    text += changes.empty() ? "Nothing was changed.\n" : changes;
    if (!rehearsal.doubts.empty()) {
        text += "\nNot certain:\n";
        for (const Doubt& doubt : rehearsal.doubts) {
            text += "  " + TextOfDoubt(doubt) + '\n';
        }
    }
    return text;
}

Json ChangesJson(const std::vector<Change>& changes) {
    Json json = Json::array();
    for (const Change& change : changes) {
        Json& entry = json.emplace_back(Json::object());
        entry["kind"] = KindName(change.kind);
        const HostPart& where = change.where;
        const std::pair<const char*, const std::string*> levels[] = {
            {"adapter", &where.adapter}, {"port", &where.port}, {"function", &where.function}};
        for (const auto& [name, text] :
             std::span(levels).first(static_cast<std::size_t>(where.level))) {
            entry[name] = Shown(*text);
        }
        if (!where.member.empty()) {
            entry["member"] = Shown(where.member);
        }
        if (!change.before.is_null()) {
            entry["before"] = change.before;
        }
        if (!change.after.is_null()) {
            entry["after"] = change.after;
        }
    }
    return json;
}

Json RehearsalJson(const ProgramJob& job, const Rehearsal& rehearsal, const Json* hostFile) {
    Json json = ReportJson(job, rehearsal.report);
    if (rehearsal.report.outcome == RunOutcome::Done && !rehearsal.doubts.empty()) {
        json["outcome"] = "uncertain";
    }
    json["certain"] = rehearsal.doubts.empty() && rehearsal.report.outcome != RunOutcome::Failed;
    Json& uncertainties = json["uncertainties"] = Json::array();
    for (const Doubt& doubt : rehearsal.doubts) {
        Json& entry = uncertainties.emplace_back(Json::object());
        entry["operation"] = doubt.operation;
        if (const auto* const operation = tavrolib::FindOperation(doubt.operation)) {
            entry["name"] = operation->name;
        }
        entry["request"] = Shown(doubt.request);
        entry["reason"] = doubt.reason;
    }
    json["changes"] = ChangesJson(rehearsal.difference.changes);
    json["patch"] = hostFile == nullptr
                        ? rehearsal.difference.patch
                        : FittedPatch(*hostFile, rehearsal.before, rehearsal.difference.patch);
    return json;
}

}  // namespace tavrohost
