#include "library/session/session.h"

#include <optional>
#include <utility>

#include "library/calls/refusals.h"
#include "library/messages/language.h"
#include "library/text/text.h"

namespace tavrolib {
namespace {

constexpr const char* LogFileName = "tavrocli.log";

std::optional<std::string> CopyOf(const std::string* text) {
    return text == nullptr ? std::nullopt : std::optional(*text);
}

Outcome TraceUnusable(const std::string& variable, const platform::FileError& error) {
    return Refused(Status::TraceUnusable, L"The trace of calls cannot be written.",
                   L"Name a file for the trace that can be written.",
                   WideFromUtf8(variable) + L": " + error.Text());
}

}  // namespace

Outcome Session::Configure() {
    trace_.reset();
    provider_ = makeProvider_();
    const std::string prefix = provider_->EnvironmentPrefix();
    try {
        trace_ = Trace::FromEnvironment(prefix);
    } catch (const platform::FileError& error) {
        return TraceUnusable(Trace::VariableName(prefix), error);
    }
    return provider_->Configure();
}

// The description of a call that comes in, for which the environment counts.
Call Session::BeginCall(EntryPoint entryPoint, void* output) {
    if (provider_ == nullptr) {
        Configure();
    }
    Call call;
    call.entryPoint = entryPoint;
    call.output = output;
    call.isComplete = output != nullptr;
    return call;
}

Outcome Session::Answer(const Call& call, const Service& service) {
    std::optional<Outcome> intercepted = provider_->Intercept(call);
    return intercepted ? *std::move(intercepted) : service();
}

std::uint32_t Session::Perform(const Call& call, const Service& service) {
    if (trace_) {
        trace_->Begin(call);
    }
    const Outcome outcome = Answer(call, service);
    const auto told = outcome.ErrorIn(language_);
    if (told) {
        lastError_ = *told;
    }
    if (trace_) {
        trace_->End(call, outcome.status, told ? &*told : nullptr);
    }
    log_.Write(call, outcome.status, outcome.error ? &*outcome.error : nullptr);
    return outcome.status;
}

Outcome Session::Serve(const Call& call) {
    if (!isInitialized_) {
        return NotInitialized();
    }
    // Where another answered Initialize, opening was left to the calls.
    if (Outcome opened = provider_->Open(); !opened.IsDone()) {
        return opened;
    }
    if (Outcome checked = CheckArguments(call); !checked.IsDone()) {
        return checked;
    }
    return provider_->Serve(call);
}

std::uint32_t Session::PerformServed(const Call& call) {
    return Perform(call, [&] { return Serve(call); });
}

std::uint32_t Session::Initialize(std::uint32_t debugFlag, const std::wstring* localeName) {
    const Outcome configured = Configure();
    isInitialized_ = false;
    language_ = localeName == nullptr ? Language::English : LanguageOfLocale(*localeName);
    log_.Close();
    if (debugFlag == 1) {
        log_.Open(LogFileName, provider_->Description());
    }
    Call call = BeginCall(EntryPoint::Initialize);
    call.debug = debugFlag;
    if (localeName != nullptr) {
        call.locale = *localeName;
    }
    const std::uint32_t status = Perform(call, [&] {
        Outcome outcome = configured.IsDone() ? provider_->Open() : configured;
        if (outcome.error) {
            std::wstring& details = outcome.error->details;
            details += (details.empty() ? L"" : L"; ") + provider_->Description();
        }
        return outcome;
    });
    isInitialized_ = status == 0;
    return status;
}

std::uint32_t Session::Uninitialize() {
    const Call call = BeginCall(EntryPoint::Uninitialize);
    const std::uint32_t status =
        Perform(call, [this] { return isInitialized_ ? Done() : NotInitialized(); });
    isInitialized_ = false;
    // No file stays open. A later call begins anew, as the first one did.
    log_.Close();
    trace_.reset();
    provider_.reset();
    return status;
}

std::uint32_t Session::DoOperation(std::uint32_t operation, const std::string* request, void* input,
                                   void* output) {
    Call call = BeginCall(EntryPoint::DoOperation, output);
    call.operation = operation;
    call.described = FindOperation(operation);
    call.request = CopyOf(request);
    call.input = input;
    return PerformServed(call);
}

std::uint32_t Session::GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    const Call call = BeginCall(EntryPoint::GetLocalizeMessage, text);
    if (text != nullptr) {
        text->clear();
    }
    // Neither traced nor logged. The last error stays whatever happens here, because messages are
    // shown between a failure and the question for its reason.
    const Outcome outcome = Answer(call, [] { return Done(); });
    if (text == nullptr || outcome.status != 0 || !text->empty()) {
        return outcome.status;
    }
    std::optional<std::wstring> message = provider_->MessageText(language_, messageId);
    if (!message) {
        return static_cast<std::uint32_t>(Status::UnknownMessage);
    }
    *text = *std::move(message);
    return 0;
}

std::uint32_t Session::GetLastErrorMessage(tavroapi::ErrorRecord* error) {
    const Call call = BeginCall(EntryPoint::GetLastErrorMessage, error);
    if (error != nullptr) {
        *error = lastError_;
    }
    return Perform(call, [] { return Done(); });
}

std::uint32_t Session::GetHostName(std::string* hostName) {
    return PerformServed(BeginCall(EntryPoint::GetHostName, hostName));
}

std::uint32_t Session::GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>* adapters) {
    return PerformServed(BeginCall(EntryPoint::GetDiscoveredAdapters, adapters));
}

std::uint32_t Session::GetPortWWNs(const std::string* adapterName, const std::string* portName,
                                   std::list<tavroapi::FunctionAddress>* addresses,
                                   std::list<tavroapi::FunctionIdentity>* identities) {
    PortFunctions functions;
    if (addresses != nullptr) {
        functions.addresses = *addresses;
    }
    if (identities != nullptr) {
        functions.identities = *identities;
    }
    Call call = BeginCall(EntryPoint::GetPortWWNs, &functions);
    call.adapter = CopyOf(adapterName);
    call.port = CopyOf(portName);
    call.isComplete = addresses != nullptr && identities != nullptr;
    const std::uint32_t status = PerformServed(call);
    if (addresses != nullptr) {
        *addresses = std::move(functions.addresses);
    }
    if (identities != nullptr) {
        *identities = std::move(functions.identities);
    }
    return status;
}

std::uint32_t Session::GetPartitionState(const std::string* portIdentifier, std::uint32_t* state) {
    Call call = BeginCall(EntryPoint::GetPartitionState, state);
    call.request = CopyOf(portIdentifier);
    return PerformServed(call);
}

std::uint32_t Session::GetAdapterType(const std::string* mac, std::string* typeText) {
    Call call = BeginCall(EntryPoint::GetAdapterType, typeText);
    call.request = CopyOf(mac);
    return PerformServed(call);
}

std::uint32_t Session::GetAdapterPortNumber(const std::string* mac, std::uint32_t* portCount) {
    Call call = BeginCall(EntryPoint::GetAdapterPortNumber, portCount);
    call.request = CopyOf(mac);
    return PerformServed(call);
}

std::uint32_t Session::NoteInternalError(const char* reason) noexcept {
    constexpr auto Code = static_cast<std::uint32_t>(Status::Internal);
    try {
        lastError_ = *Refused(Status::Internal, L"The management library failed.", L"Try again.",
                              WideFromUtf8(reason))
                          .ErrorIn(language_);
    } catch (...) {
        // Not even memory for the text is left; the status alone must do.
        lastError_.code = Code;
    }
    return Code;
}

Session& ProcessSession() {
    static Session session;
    return session;
}

}  // namespace tavrolib
