#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "library/calls/call.h"
#include "library/calls/outcome.h"
#include "library/messages/catalogue.h"

namespace tavrolib {

// What one library does behind the entry points. The session makes it, keeps the library's state
// and leads every call; a provider knows neither traces, logs nor the last error. Exceptions may
// leave every function; the entry points turn them into a status.
class Provider {
  public:
    Provider() = default;
    virtual ~Provider() = default;
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    // What the names of this library's environment variables begin with, such as "TAVROSIM_".
    virtual std::string EnvironmentPrefix() const = 0;

    // What this library is, for the log's first line and the details of a failed Initialize: its
    // name, its version and what it works on. Asked for once it is configured.
    virtual std::wstring Description() const = 0;

    // Reads the provider's own part of the environment. Called once, before every other call. A
    // refusal makes Initialize fail; calls that do not want the library initialized still come.
    virtual Outcome Configure() { return Done(); }

    // Answers a call in the place of everything that would follow, initialized or not; nothing for
    // a call that is to be served.
    virtual std::optional<Outcome> Intercept(const Call& /*call*/) { return std::nullopt; }

    // Makes ready to serve. Called by Initialize and before each call that is served; does nothing
    // once it has succeeded.
    virtual Outcome Open() = 0;

    // Serves DoOperation or one of the queries. The library is initialized and open, and the call
    // has everything that `CheckArguments` wants.
    virtual Outcome Serve(const Call& call) = 0;

    // The text of a message; nothing when there is no such message.
    virtual std::optional<std::wstring> MessageText(Language language, std::uint32_t id) const {
        const wchar_t* text = FindMessage(language, id);
        return text == nullptr ? std::nullopt : std::optional<std::wstring>(text);
    }
};

// A new provider. Each library defines this once.
std::unique_ptr<Provider> MakeProvider();

}  // namespace tavrolib
