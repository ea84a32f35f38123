#include "library/journal/call_line.h"

#include <nlohmann/json.hpp>

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

}  // namespace

Json CallToJson(const Call& call, Secrets secrets) {
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
        json["input"] = call.InputType()->toJson(call.input, secrets);
    }
    return json;
}

void AddOutputs(Json& line, const Call& call, const tavroapi::ErrorRecord* error, Secrets secrets) {
    if (call.output != nullptr && call.OutputType() != nullptr) {
        line["output"] = call.OutputType()->toJson(call.output, secrets);
    }
    if (error != nullptr) {
        line["error"] = ErrorToJson(*error);
    }
    if (call.input != nullptr && call.InputType() != nullptr &&
        call.InputType()->completionCode != nullptr) {
        line["result"] = call.InputType()->completionCode(call.input);
    }
}

}  // namespace tavrolib
