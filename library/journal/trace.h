#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "library/calls/call.h"
#include "library/json/json.h"
#include "library/platform/file.h"
#include "library/records/secrets.h"

namespace tavrolib {

struct TraceOptions {
    std::filesystem::path path;
    Secrets secrets = Secrets::Hidden;
    bool outputs = false;
};

// The file to which one JSON object per call is appended.
class Trace {
  public:
    // Throws platform::FileError when the file cannot be opened, is no regular file, is too large,
    // or cannot be kept from others though secrets or outputs go into it.
    explicit Trace(const TraceOptions& options);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    // The trace that the environment asks for, null when it asks for none. The names of the
    // variables begin with `prefix`. Throws platform::FileError as the constructor does.
    static std::unique_ptr<Trace> FromEnvironment(const std::string& prefix);

    // The variable that names the file of the trace.
    static std::string VariableName(const std::string& prefix) { return prefix + "TRACE"; }

    // Notes the call as it came in. To be told before the call is served, which may change its
    // records.
    void Begin(const Call& call);

    // Writes the line of the call that `Begin` was told, with what the call filled in where
    // outputs are wanted; `error` is the error that this call set, null for none.
    void End(const Call& call, std::uint32_t status, const tavroapi::ErrorRecord* error);

  private:
    TraceOptions options_;
    platform::AppendFile file_;
    std::unique_ptr<Json> line_;
};

}  // namespace tavrolib
