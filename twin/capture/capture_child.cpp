#include "twin/capture/capture_child.h"

#include <nlohmann/json.hpp>
#include <string>

#include "cli/startup.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "mgmt/library.h"
#include "platform/crash_dump.h"
#include "platform/output.h"
#include "tavroapi/entry_points.h"
#include "twin/capture/loaded_library.h"
#include "twin/capture/one_line.h"
#include "twin/capture/walk.h"
#include "twin/exit_status.h"
#include "twin/run/library_source.h"

namespace tavrohost {
namespace {

using tavrolib::Json;
using tavrolib::Utf8FromWide;

// What people are told of an error, in one line: ": " and its words; nothing where it has none.
std::string WordsOf(const std::optional<tavroapi::ErrorRecord>& error) {
    std::string words;
    if (error) {
        for (const std::wstring& text : {error->message, error->details}) {
            if (!text.empty()) {
                words += (words.empty() ? ": " : " ") + InOneLine(Utf8FromWide(text));
            }
        }
    }
    return words;
}

// The library between its first call and its last.
class LibrarySession {
  public:
    // Throws TroubleError with the library's own words when it refuses.
    LibrarySession() {
        auto* const initialize = tavro::ResolveEntryPoint<tavroapi::InitializeEntry>();
        if (initialize == nullptr) {
            throw TroubleError(std::string("the library lacks ") + tavroapi::InitializeEntry::Name);
        }
        const std::uint32_t status = StatusOf(initialize);
        if (status != 0) {
            throw TroubleError("the library cannot be used (status " + std::to_string(status) +
                               ")" + WordsOf(library_.LastError()));
        }
    }
    ~LibrarySession() {
        auto* const uninitialize = tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>();
        if (uninitialize != nullptr) {
            try {
                uninitialize();
            } catch (...) {  // what it captured is there
            }
        }
    }
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    LoadedLibrary& Library() { return library_; }

  private:
    static std::uint32_t StatusOf(tavroapi::InitializeEntry::Function* initialize) {
        std::wstring locale = tavro::GetLanguage();
        try {
            return initialize(0, &locale);
        } catch (...) {
            throw TroubleError("the library let an exception out of its first call");
        }
    }

    LoadedLibrary library_;
};

void TellPlace(std::size_t place, std::size_t count, const std::string& key) {
    tavro::platform::WriteStandardError(
        L"function " + std::to_wstring(place) + L" of " + std::to_wstring(count) + L": " +
        tavrolib::WideFromUtf8(tavrolib::Utf8FromBytes(key)) + L"\n");
}

Json AnswersFor(const Json& details) {
    const tavro::LibrarySource source = SourceOf(LibraryFrom(details.at(capture_details::Library)));
    if (!source.failureReason.empty()) {
        throw TroubleError("cannot load " + Utf8FromWide(source.failureReason));
    }
    tavro::UseLibrary(source);
    const bool withSecrets = details.at(capture_details::WithSecrets).get<bool>();
    const bool tellsProgress = details.at(capture_details::TellsProgress).get<bool>();
    LibrarySession session;
    return CaptureAnswers(session.Library(),
                          withSecrets ? tavrolib::Secrets::Shown : tavrolib::Secrets::LeftOut,
                          tellsProgress ? CaptureProgress(TellPlace) : CaptureProgress());
}

Json ResultOf(const Json& details) {
    Json result = Json::object();
    try {
        result["answers"] = AnswersFor(details);
    } catch (const std::exception& error) {
        result["trouble"] = tavrolib::Utf8FromBytes(error.what());
    } catch (...) {
        result["trouble"] = "the library let an exception out";
    }
    return result;
}

}  // namespace

std::filesystem::path AnswersFileIn(const std::filesystem::path& folder) {
    return folder / "answers";
}

int RunAsCapture(const ReceivedJob& job, int /*argc*/, const char* const* /*argv*/) {
    tavro::platform::ForbidCrashDumps();
    tavrolib::platform::ReplaceContent(AnswersFileIn(job.folder),
                                       tavrolib::LineOf(ResultOf(job.details)));
    return Success;
}

}  // namespace tavrohost
