#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "simulator/call.h"
#include "simulator/log.h"
#include "simulator/messages/catalogue.h"
#include "simulator/outcome.h"
#include "simulator/script.h"
#include "simulator/store.h"
#include "simulator/trace.h"
#include "tavroapi/inventory_records.h"

namespace tavrosim {

/// What the library knows in one process, and its entry points. Each returns the status; arguments
/// may be null. The environment, the script and the trace count from the first call on, even one
/// that comes before Initialize, until Uninitialize; only the model wants the library initialized.
/// A session is used by one thread.
class Session {
  public:
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

    /// Notes a failure of the library itself as the last error and returns its status.
    std::uint32_t NoteInternalError(const char* reason) noexcept;

  private:
    using ModelCall = std::function<Outcome()>;

    void Configure();
    Outcome LoadConfiguration();
    std::uint32_t Perform(const Call& call, const ModelCall& model);
    Outcome Serve(const Call& call, const ModelCall& model);
    Outcome WithHost(const std::function<Outcome(const Host&)>& query);
    std::uint32_t QueryByIdentifier(
        EntryPoint entryPoint, const std::string* identifier, void* output,
        const std::function<Outcome(const Host&, const std::string&)>& query);

    bool isConfigured_ = false;
    bool isInitialized_ = false;
    Language language_ = Language::English;
    Script script_;
    std::unique_ptr<Trace> trace_;
    Log log_;
    Store store_{HostPlace{}};
    tavroapi::ErrorRecord lastError_;
};

/// The session of this process.
Session& ProcessSession();

}  // namespace tavrosim
