#include "library/journal/trace.h"

#include <nlohmann/json.hpp>

#include "library/json/json.h"
#include "library/platform/environment.h"
#include "library/text/text.h"

namespace tavrolib {
namespace {

Json ErrorToJson(const tavroapi::ErrorRecord& error) {
    Json json = Json::object();
    json["code"] = error.code;
    json["message"] = Utf8FromWide(error.message);
    json["action"] = Utf8FromWide(error.action);
    json["additional"] = Utf8FromWide(error.additional);
    json["details"] = Utf8FromWide(error.details);
    return json;
}

// What a trace holds beyond the calls may be secret.
platform::Readers ReadersOf(const TraceOptions& options) {
    return options.secrets == Secrets::Shown || options.outputs ? platform::Readers::OwnerOnly
                                                                : platform::Readers::AsBefore;
}

}  // namespace

Trace::Trace(const TraceOptions& options)
    : options_(options),
      file_(options.path, platform::Accept::RegularFiles, ReadersOf(options)),
      line_(std::make_unique<Json>()) {}

Trace::~Trace() = default;

std::unique_ptr<Trace> Trace::FromEnvironment(const std::string& prefix) {
    const std::string name = VariableName(prefix);
    const auto path = platform::PathVariable(name.c_str());
    if (!path) {
        return nullptr;
    }
    TraceOptions options{*path};
    if (platform::IsSwitchedOn((name + "_SECRETS").c_str())) {
        options.secrets = Secrets::Shown;
    }
    options.outputs = platform::IsSwitchedOn((name + "_OUTPUTS").c_str());
    return std::make_unique<Trace>(options);
}

void Trace::Begin(const Call& call) {
    Json json = Json::object();
    json["call"] = RowOf(call.entryPoint).name;
    const auto addText = [&json](const char* name, const std::optional<std::string>& text) {
        if (text) {
            json[name] = Utf8FromBytes(*text);
        }
    };
    if (call.debug) {
        json["debug"] = *call.debug;
    }
    if (call.locale) {
        json["locale"] = Utf8FromWide(*call.locale);
    }
    if (call.operation) {
        json["operation"] = *call.operation;
    }
    addText("request", call.request);
    addText("adapter", call.adapter);
    addText("port", call.port);
    if (call.input != nullptr && call.InputType() != nullptr) {
        json["input"] = call.InputType()->toJson(call.input, options_.secrets);
    }
    *line_ = std::move(json);
}

void Trace::End(const Call& call, std::uint32_t status, const tavroapi::ErrorRecord* error) {
    Json json = std::move(*line_);
    json["status"] = status;
    if (options_.outputs) {
        if (call.output != nullptr && call.OutputType() != nullptr) {
            json["output"] = call.OutputType()->toJson(call.output, options_.secrets);
        }
        if (error != nullptr) {
            json["error"] = ErrorToJson(*error);
        }
        if (call.input != nullptr && call.InputType() != nullptr &&
            call.InputType()->completionCode != nullptr) {
            json["result"] = call.InputType()->completionCode(call.input);
        }
    }
    file_.Append(LineOf(json) + '\n');
}

}  // namespace tavrolib
