#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "simulator/call.h"
#include "simulator/json.h"
#include "simulator/platform/file.h"
#include "simulator/secrets.h"

namespace tavrosim {

struct TraceOptions {
    std::filesystem::path path;
    Secrets secrets = Secrets::Hidden;
    bool outputs = false;
};

/// The file to which one JSON object per call is appended.
class Trace {
  public:
    /// Throws platform::FileError when the file cannot be opened.
    explicit Trace(const TraceOptions& options);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    /// Notes the call as it came in. To be told before the call is served, which may change its
    /// records.
    void Begin(const Call& call);

    /// Writes the line of the call that `Begin` was told, with what the call filled in where
    /// outputs are wanted; `error` is the error that this call set, null for none.
    void End(const Call& call, std::uint32_t status, const tavroapi::ErrorRecord* error);

  private:
    TraceOptions options_;
    platform::AppendFile file_;
    std::unique_ptr<Json> line_;
};

}  // namespace tavrosim
