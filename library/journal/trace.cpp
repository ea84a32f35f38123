#include "library/journal/trace.h"

#include <nlohmann/json.hpp>

#include "library/journal/call_line.h"
#include "library/json/json.h"
#include "library/platform/environment.h"

namespace tavrolib {
namespace {

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
    *line_ = CallToJson(call, options_.secrets);
}

void Trace::End(const Call& call, std::uint32_t status, const tavroapi::ErrorRecord* error) {
    Json json = std::move(*line_);
    json["status"] = status;
    if (options_.outputs) {
        AddOutputs(json, call, error, options_.secrets);
    }
    file_.Append(LineOf(json) + '\n');
}

}  // namespace tavrolib
