#include "simulator/session.h"

#include <utility>

#include "simulator/messages/language.h"
#include "simulator/model/inventory.h"
#include "simulator/model/model.h"
#include "simulator/place.h"
#include "simulator/platform/environment.h"
#include "simulator/platform/file.h"
#include "simulator/text.h"

namespace tavrosim {
namespace {

constexpr const char* LogFileName = "tavrocli.log";

std::optional<std::string> CopyOf(const std::string* text) {
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::string TextOrEmpty(const std::string* text) {
    return text == nullptr ? std::string() : *text;
}

Outcome ScriptUnusable(std::wstring details) {
    return Refused(Status::ScriptUnusable, L"The script of answers cannot be used.",
                   L"Correct the file that TAVROSIM_SCRIPT names.", std::move(details));
}

Outcome NotInitialized() {
    return Refused(Status::NotInitialized, L"The management library is not initialized.",
                   L"This is an error of the calling program.");
}

}  // namespace

void Session::Configure() {
    if (!isConfigured_) {
        LoadConfiguration();
    }
}

Outcome Session::LoadConfiguration() {
    isConfigured_ = true;
    script_ = Script();
    trace_.reset();
    store_ = Store(HostPlace::FromEnvironment());
    if (const auto path = platform::PathVariable("TAVROSIM_TRACE")) {
        TraceOptions options{*path};
        if (platform::IsSwitchedOn("TAVROSIM_TRACE_SECRETS")) {
            options.secrets = Secrets::Shown;
        }
        options.outputs = platform::IsSwitchedOn("TAVROSIM_TRACE_OUTPUTS");
        try {
            trace_ = std::make_unique<Trace>(options);
        } catch (const platform::FileError& error) {
            return Refused(Status::TraceUnusable, L"The trace of calls cannot be written.",
                           L"Correct the file name in TAVROSIM_TRACE.", error.Text());
        }
    }
    if (const auto path = platform::PathVariable("TAVROSIM_SCRIPT")) {
        try {
            const auto text = platform::ReadWholeFile(*path);
            if (!text) {
                return ScriptUnusable(platform::TextOf(*path) + L": there is no such file");
            }
            script_ = Script::FromText(*text);
        } catch (const platform::FileError& error) {
            return ScriptUnusable(error.Text());
        } catch (const ShapeError& error) {
            return ScriptUnusable(platform::TextOf(*path) + L": " + WideFromUtf8(error.what()));
        }
    }
    return Done();
}

// The script's answer, else the model's, else a success that changes nothing.
Outcome Session::Serve(const Call& call, const ModelCall& model) {
    try {
        if (const Answer* answer = script_.Take(call)) {
            Outcome outcome;
            outcome.status = StatusOf(*answer);
            if (const tavroapi::ErrorRecord* error = ErrorOf(*answer)) {
                outcome.error = *error;
            }
            return outcome;
        }
    } catch (const ShapeError& error) {
        return ScriptUnusable(WideFromUtf8(error.what()));
    }
    return script_.HasModel() ? model() : Done();
}

std::uint32_t Session::Perform(const Call& call, const ModelCall& model) {
    if (trace_) {
        trace_->Begin(call);
    }
    const Outcome outcome = Serve(call, model);
    if (outcome.error) {
        lastError_ = *outcome.error;
    }
    const tavroapi::ErrorRecord* error = outcome.error ? &*outcome.error : nullptr;
    if (trace_) {
        trace_->End(call, outcome.status, error);
    }
    log_.Write(call, outcome.status, error);
    return outcome.status;
}

Outcome Session::WithHost(const std::function<Outcome(const Host&)>& query) {
    if (!isInitialized_) {
        return NotInitialized();
    }
    if (!store_.IsLoaded()) {
        // Initialize was answered by a script and left it to the calls.
        Outcome loaded = store_.Load();
        if (!loaded.IsDone()) {
            return loaded;
        }
    }
    return query(store_.Current());
}

std::uint32_t Session::Initialize(std::uint32_t debugFlag, const std::wstring* localeName) {
    const Outcome configured = LoadConfiguration();
    isInitialized_ = false;
    language_ = localeName == nullptr ? Language::English : LanguageOfLocale(*localeName);
    log_.Close();
    if (debugFlag == 1) {
        log_.Open(LogFileName);
    }
    Call call;
    call.entryPoint = EntryPoint::Initialize;
    call.debug = debugFlag;
    if (localeName != nullptr) {
        call.locale = *localeName;
    }
    const std::uint32_t status =
        Perform(call, [&] { return configured.IsDone() ? store_.Load() : configured; });
    isInitialized_ = status == 0;
    return status;
}

std::uint32_t Session::Uninitialize() {
    Configure();
    Call call;
    call.entryPoint = EntryPoint::Uninitialize;
    const std::uint32_t status =
        Perform(call, [this] { return isInitialized_ ? Done() : NotInitialized(); });
    isInitialized_ = false;
    // No file stays open. A later call begins anew, as the first one did.
    log_.Close();
    trace_.reset();
    isConfigured_ = false;
    return status;
}

std::uint32_t Session::DoOperation(std::uint32_t operation, const std::string* request, void* input,
                                   void* output) {
    Configure();
    Call call;
    call.entryPoint = EntryPoint::DoOperation;
    call.operation = operation;
    call.described = FindOperation(operation);
    call.request = CopyOf(request);
    call.input = input;
    call.output = output;
    return Perform(call, [&] {
        return WithHost([&](const Host& host) {
            const OperationModel* model = FindModel(operation);
            if (model == nullptr) {
                return Refused(Status::UnknownOperation,
                               L"Operation " + std::to_wstring(operation) + L" is not supported.",
                               L"Use a management library that supports this operation.");
            }
            const std::string target = TextOrEmpty(request);
            return model->read != nullptr ? model->read(host, target, input, output)
                                          : store_.Change([&](Host& fresh) {
                                                return model->change(fresh, target, input, output);
                                            });
        });
    });
}

std::uint32_t Session::GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    Configure();
    if (text != nullptr) {
        text->clear();
    }
    Call call;
    call.entryPoint = EntryPoint::GetLocalizeMessage;
    call.output = text;
    // Neither traced nor logged. The last error stays whatever happens here, because messages are
    // shown between a failure and the question for its reason.
    const Outcome outcome = Serve(call, [] { return Done(); });
    if (text == nullptr || outcome.status != 0 || !text->empty()) {
        return outcome.status;
    }
    if (script_.MessagesAreNumbers()) {
        *text = L'#' + std::to_wstring(messageId);
        return 0;
    }
    const wchar_t* message = FindMessage(language_, messageId);
    if (message == nullptr) {
        return static_cast<std::uint32_t>(Status::UnknownMessage);
    }
    *text = message;
    return 0;
}

std::uint32_t Session::GetLastErrorMessage(tavroapi::ErrorRecord* error) {
    Configure();
    Call call;
    call.entryPoint = EntryPoint::GetLastErrorMessage;
    call.output = error;
    if (error != nullptr) {
        *error = lastError_;
    }
    return Perform(call, [] { return Done(); });
}

std::uint32_t Session::GetHostName(std::string* hostName) {
    Configure();
    Call call;
    call.entryPoint = EntryPoint::GetHostName;
    call.output = hostName;
    return Perform(call, [&] {
        return WithHost([&](const Host& host) {
            return hostName == nullptr ? MissingArgument(L"host name")
                                       : tavrosim::GetHostName(host, *hostName);
        });
    });
}

std::uint32_t Session::GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>* adapters) {
    Configure();
    Call call;
    call.entryPoint = EntryPoint::GetDiscoveredAdapters;
    call.output = adapters;
    return Perform(call, [&] {
        return WithHost([&](const Host& host) {
            return adapters == nullptr ? MissingArgument(L"adapter list")
                                       : tavrosim::GetDiscoveredAdapters(host, *adapters);
        });
    });
}

std::uint32_t Session::GetPortWWNs(const std::string* adapterName, const std::string* portName,
                                   std::list<tavroapi::FunctionAddress>* addresses,
                                   std::list<tavroapi::FunctionIdentity>* identities) {
    Configure();
    PortFunctions functions;
    if (addresses != nullptr) {
        functions.addresses = *addresses;
    }
    if (identities != nullptr) {
        functions.identities = *identities;
    }
    Call call;
    call.entryPoint = EntryPoint::GetPortWWNs;
    call.adapter = CopyOf(adapterName);
    call.port = CopyOf(portName);
    call.output = &functions;
    const std::uint32_t status = Perform(call, [&] {
        return WithHost([&](const Host& host) {
            return addresses == nullptr || identities == nullptr
                       ? MissingArgument(L"function list")
                       : GetPortFunctions(host, TextOrEmpty(adapterName), TextOrEmpty(portName),
                                          functions);
        });
    });
    if (addresses != nullptr) {
        *addresses = std::move(functions.addresses);
    }
    if (identities != nullptr) {
        *identities = std::move(functions.identities);
    }
    return status;
}

std::uint32_t Session::QueryByIdentifier(
    EntryPoint entryPoint, const std::string* identifier, void* output,
    const std::function<Outcome(const Host&, const std::string&)>& query) {
    Configure();
    Call call;
    call.entryPoint = entryPoint;
    call.request = CopyOf(identifier);
    call.output = output;
    return Perform(call, [&] {
        return WithHost([&](const Host& host) {
            return output == nullptr ? MissingArgument(L"result")
                                     : query(host, TextOrEmpty(identifier));
        });
    });
}

std::uint32_t Session::GetPartitionState(const std::string* portIdentifier, std::uint32_t* state) {
    return QueryByIdentifier(EntryPoint::GetPartitionState, portIdentifier, state,
                             [state](const Host& host, const std::string& identifier) {
                                 return tavrosim::GetPartitionState(host, identifier, *state);
                             });
}

std::uint32_t Session::GetAdapterType(const std::string* mac, std::string* typeText) {
    return QueryByIdentifier(EntryPoint::GetAdapterType, mac, typeText,
                             [typeText](const Host& host, const std::string& identifier) {
                                 return tavrosim::GetAdapterType(host, identifier, *typeText);
                             });
}

std::uint32_t Session::GetAdapterPortNumber(const std::string* mac, std::uint32_t* portCount) {
    return QueryByIdentifier(EntryPoint::GetAdapterPortNumber, mac, portCount,
                             [portCount](const Host& host, const std::string& identifier) {
                                 return tavrosim::GetAdapterPortNumber(host, identifier,
                                                                       *portCount);
                             });
}

std::uint32_t Session::NoteInternalError(const char* reason) noexcept {
    constexpr auto Code = static_cast<std::uint32_t>(Status::Internal);
    try {
        lastError_ = *Refused(Status::Internal, L"The management library failed.", L"Try again.",
                              WideFromUtf8(reason))
                          .error;
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

}  // namespace tavrosim
