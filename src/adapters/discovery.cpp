#include "adapters/discovery.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "mgmt/message.h"
#include "mgmt/text.h"

namespace tavro {

namespace {

constexpr std::string_view SupportedModels[] = {"4610K", "4910K", "3910K"};

// Discovery looks at the first port of an adapter only.
constexpr const char* FirstPort = "Port 1";

constexpr std::uint32_t EntryPointMissing = 0x8000;

bool IsSupported(const tavroapi::AdapterRecord& adapter) {
    return std::ranges::any_of(SupportedModels, [&](std::string_view model) {
        return adapter.name.find(model) != std::string::npos;
    });
}

// The state as reported by the first function of the state-bearing type that answers.
std::optional<std::int32_t> ReadAdapterState(const std::list<PortFunction>& functions) {
    for (const PortFunction& function : functions) {
        if (function.identity.functionType != tavroapi::EthernetFunction) {
            continue;
        }
        std::wstring state;
        if (DoOperation<tavroapi::OperationCode::ReadAdapterState>(function.address.keyText,
                                                                   state) == CallOutcome::Done) {
            return LeadingInteger(ToNarrow(state));
        }
        ShowLastError();
    }
    return std::nullopt;
}

std::int32_t ReportFailure(MessageId message) {
    ShowMessage(message);
    ShowLastError();
    return NoAdapterState;
}

}  // namespace

std::int32_t DiscoverAdapters(EntryCache& cache) {
    switch (ReadHostName(cache)) {
        case CallOutcome::NotResolved:
            return ReportFailure(MessageId::HostNameUnavailable);
        case CallOutcome::Failed:
            return ReportFailure(MessageId::HostNameFailed);
        case CallOutcome::Done:
            break;
    }

    std::list<tavroapi::AdapterRecord> adapters;
    switch (ReadAdapters(cache, adapters)) {
        case CallOutcome::NotResolved:
            ShowMessage(MessageId::LibraryMissing);
            return NoAdapterState;
        case CallOutcome::Failed:
            return ReportFailure(MessageId::AdaptersFailed);
        case CallOutcome::Done:
            break;
    }

    for (const tavroapi::AdapterRecord& adapter : adapters) {
        if (!IsSupported(adapter)) {
            continue;
        }
        std::list<PortFunction> functions;
        switch (ReadPortFunctions(cache, adapter.name, FirstPort, functions)) {
            case CallOutcome::NotResolved:
                continue;
            case CallOutcome::Failed:
                ReportFailure(MessageId::PortFunctionsFailed);
                continue;
            case CallOutcome::Done:
                break;
        }
        if (const auto state = ReadAdapterState(functions)) {
            return *state;
        }
    }
    return NoAdapterState;
}

std::uint32_t FindIscsiFunction(EntryCache& cache, std::string& keyText) {
    keyText.clear();
    std::list<tavroapi::AdapterRecord> adapters;
    const CallOutcome outcome = ReadAdapters(cache, adapters);
    if (outcome == CallOutcome::NotResolved) {
        return EntryPointMissing;
    }
    std::uint32_t status = LastStatus;
    if (outcome == CallOutcome::Failed) {
        return status;
    }
    for (tavroapi::AdapterRecord& adapter : adapters) {
        adapter.portNames.unique();
        for (const std::string& portName : adapter.portNames) {
            std::list<PortFunction> functions;
            const CallOutcome port = ReadPortFunctions(cache, adapter.name, portName, functions);
            if (port == CallOutcome::NotResolved) {
                continue;
            }
            status = LastStatus;
            if (port == CallOutcome::Failed) {
                continue;
            }
            const auto found = std::ranges::find_if(functions, [](const PortFunction& function) {
                return function.identity.functionType == tavroapi::IscsiFunction;
            });
            if (found != functions.end()) {
                keyText = found->identity.keyText;
                return status;
            }
        }
    }
    return status;
}

}  // namespace tavro
