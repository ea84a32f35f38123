#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>

#include "library/calls/call.h"
#include "library/calls/outcome.h"
#include "library/journal/log.h"
#include "library/journal/trace.h"
#include "library/messages/catalogue.h"
#include "library/session/provider.h"
#include "tavroapi/inventory_records.h"

namespace tavrolib {

// What the library knows in one process, and its entry points. Each returns the status; arguments
// may be null. The environment counts from the first call on, even one that comes before
// Initialize, until Uninitialize; only what is served by the provider wants the library
// initialized. A session is used by one thread.
class Session {
  public:
    explicit Session(std::unique_ptr<Provider> (*makeProvider)() = MakeProvider)
        : makeProvider_(makeProvider) {}

    std::uint32_t Initialize(std::uint32_t debugFlag, const std::wstring* localeName);
    std::uint32_t Uninitialize();
    std::uint32_t DoOperation(std::uint32_t operation, const std::string* request, void* input,
                              void* output);
    std::uint32_t GetLocalizeMessage(std::uint32_t messageId, std::wstring* text);
    std::uint32_t GetLastErrorMessage(tavroapi::ErrorRecord* error);
    std::uint32_t GetHostName(std::string* hostName);
    std::uint32_t GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>* adapters);
    std::uint32_t GetPortWWNs(const std::string* adapterName, const std::string* portName,
                              std::list<tavroapi::FunctionAddress>* addresses,
                              std::list<tavroapi::FunctionIdentity>* identities);
    std::uint32_t GetPartitionState(const std::string* portIdentifier, std::uint32_t* state);
    std::uint32_t GetAdapterType(const std::string* mac, std::string* typeText);
    std::uint32_t GetAdapterPortNumber(const std::string* mac, std::uint32_t* portCount);

    // Notes a failure of the library itself as the last error and returns its status.
    std::uint32_t NoteInternalError(const char* reason) noexcept;

  private:
    using Service = std::function<Outcome()>;

    Outcome Configure();
    Call BeginCall(EntryPoint entryPoint, void* output = nullptr);
    Outcome Answer(const Call& call, const Service& service);
    std::uint32_t Perform(const Call& call, const Service& service);
    Outcome Serve(const Call& call);
    std::uint32_t PerformServed(const Call& call);

    std::unique_ptr<Provider> (*makeProvider_)();
    std::unique_ptr<Provider> provider_;  // null until the environment counts
    bool isInitialized_ = false;
    Language language_ = Language::English;
    std::unique_ptr<Trace> trace_;
    Log log_;
    tavroapi::ErrorRecord lastError_;
};

// The session of this process.
Session& ProcessSession();

}  // namespace tavrolib
