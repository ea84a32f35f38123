#include "twin/watch/journal.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "library/platform/file.h"
#include "library/text/text.h"

namespace tavrohost {
namespace {

using tavrolib::Json;

void AddText(Json& json, const char* name, const std::optional<std::string>& text) {
    if (text) {
        json[name] = tavrolib::Utf8FromBytes(*text);
    }
}

Json EndOf(std::uint32_t status, std::optional<std::int64_t> completionCode, bool isIncomplete) {
    Json json{{"status", status}};
    if (completionCode) {
        json["completion_code"] = *completionCode;
    }
    if (isIncomplete) {
        json["incomplete"] = true;
    }
    return json;
}

std::optional<std::string> TextIn(const Json& json, const char* name) {
    return json.contains(name)
               ? std::optional(tavrolib::BytesFromUtf8(json[name].get<std::string>()))
               : std::nullopt;
}

template <class Number>
std::optional<Number> NumberIn(const Json& json, const char* name) {
    return json.contains(name) ? std::optional(json[name].get<Number>()) : std::nullopt;
}

WatchedCall CallOf(const Json& json) {
    return {.entryPoint = json["call"].get<std::string>(),
            .operation = NumberIn<std::uint32_t>(json, "operation"),
            .operationName = json.value("name", std::string()),
            .request = TextIn(json, "request"),
            .adapter = TextIn(json, "adapter"),
            .port = TextIn(json, "port")};
}

// Calls may be nested only where one does not come back.
void EndLastOpen(Journal& journal, const Json& line) {
    for (auto call = journal.calls.rbegin(); call != journal.calls.rend(); ++call) {
        if (!call->status) {
            call->status = line["status"].get<std::uint32_t>();
            call->completionCode = NumberIn<std::int64_t>(line, "completion_code");
            call->isIncomplete = line.value("incomplete", false);
            return;
        }
    }
}

// The place of the call that an error which comes now is about: the last one, unless it is the very
// question for the error.
std::optional<std::size_t> CallOfError(const std::vector<WatchedCall>& calls) {
    const auto last = std::find_if(calls.rbegin(), calls.rend(), [](const WatchedCall& call) {
        return call.entryPoint != "GetLastErrorMessage";
    });
    return last == calls.rend() ? std::nullopt
                                : std::optional<std::size_t>(calls.rend() - last - 1);
}

void Take(const Json& line, Journal& journal) {
    if (line.contains("call")) {
        journal.calls.push_back(CallOf(line));
    } else if (line.contains("status")) {
        EndLastOpen(journal, line);
    } else if (line.contains("error")) {
        journal.error = line["error"];
        journal.errorCall = CallOfError(journal.calls);
    } else if (line.contains("no_library")) {
        journal.noLibrary = line["no_library"].get<std::string>();
    } else if (line.contains("trouble") && !journal.trouble) {
        journal.trouble = line["trouble"].get<std::string>();
    } else if (line.contains("closed")) {
        journal.isWhole = true;
    }
}

}  // namespace

Json JsonOf(const WatchedCall& call) {
    Json json{{"call", call.entryPoint}};
    if (call.operation) {
        json["operation"] = *call.operation;
    }
    if (!call.operationName.empty()) {
        json["name"] = call.operationName;
    }
    AddText(json, "request", call.request);
    AddText(json, "adapter", call.adapter);
    AddText(json, "port", call.port);
    if (call.status) {
        json.update(EndOf(*call.status, call.completionCode, call.isIncomplete));
    }
    return json;
}

JournalWriter::JournalWriter(const std::filesystem::path& file)
    : stream_(file, std::ios::binary | std::ios::app) {}

void JournalWriter::Write(const Json& line) {
    stream_ << tavrolib::LineOf(line) << std::endl;
}

void JournalWriter::Begin(const WatchedCall& call) {
    Write(JsonOf(call));
}

void JournalWriter::End(std::uint32_t status, std::optional<std::int64_t> completionCode,
                        bool isIncomplete) {
    Write(EndOf(status, completionCode, isIncomplete));
}

void JournalWriter::NoteError(const tavroapi::ErrorRecord& error) {
    Write({{"error",
            {{"code", error.code},
             {"message", tavrolib::Utf8FromWide(error.message)},
             {"action", tavrolib::Utf8FromWide(error.action)},
             {"additional", tavrolib::Utf8FromWide(error.additional)},
             {"details", tavrolib::Utf8FromWide(error.details)}}}});
}

void JournalWriter::NoteNoLibrary(std::wstring_view reason) {
    Write({{"no_library", tavrolib::Utf8FromWide(reason)}});
}

void JournalWriter::NoteTrouble(std::string_view sentence) {
    Write({{"trouble", sentence}});
}

void JournalWriter::Close() {
    Write({{"closed", true}});
}

Journal ReadJournal(const std::filesystem::path& file) {
    Journal journal;
    std::string_view rest;
    const auto content = tavrolib::platform::ReadWholeFile(file);
    if (content) {
        rest = *content;
    }
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
        Take(tavrolib::ParseJson(rest.substr(0, end)), journal);
        rest.remove_prefix(end + 1);
    }
    return journal;
}

}  // namespace tavrohost
