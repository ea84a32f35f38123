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
std::optional<std::int32_t> ReadAdapterState(const PortFunctions& functions) {
    std::wstring state;
    const bool answered = VisitFunctions(functions, [&](const auto& address, const auto& identity) {
        if (identity.functionType != tavroapi::EthernetFunction) {
            return false;
        }
        state.clear();
        if (DoOperation<tavroapi::OperationCode::ReadAdapterState>(address.keyText, state) ==
            CallOutcome::Done) {
            return true;
        }
        ShowLastError();
        return false;
    });
    return answered ? std::optional(LeadingInteger(ToNarrow(state))) : std::nullopt;
}

}  // namespace

std::int32_t DiscoverAdapters(EntryCache& cache) {
    switch (ReadHostName(cache)) {
        case CallOutcome::NotResolved:
            ShowFailure(MessageId::HostNameUnavailable);
            return NoAdapterState;
        case CallOutcome::Failed:
            ShowFailure(MessageId::HostNameFailed);
            return NoAdapterState;
        case CallOutcome::Done:
            break;
    }

    std::list<tavroapi::AdapterRecord> adapters;
    switch (ReadAdapters(cache, adapters)) {
        case CallOutcome::NotResolved:
            ShowMessage(MessageId::LibraryMissing);
            return NoAdapterState;
        case CallOutcome::Failed:
            ShowFailure(MessageId::AdaptersFailed);
            return NoAdapterState;
        case CallOutcome::Done:
            break;
    }

    for (const tavroapi::AdapterRecord& adapter : adapters) {
        if (!IsSupported(adapter)) {
            continue;
        }
        PortFunctions functions;
        switch (ReadPortFunctions(cache, adapter.name, FirstPort, functions)) {
            case CallOutcome::NotResolved:
                continue;
            case CallOutcome::Failed:
                ShowFailure(MessageId::PortFunctionsFailed);
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
            PortFunctions functions;
            const CallOutcome port = ReadPortFunctions(cache, adapter.name, portName, functions);
            if (port == CallOutcome::NotResolved) {
                continue;
            }
            status = LastStatus;
            if (port == CallOutcome::Failed) {
                continue;
            }
            const auto found = std::ranges::find(functions.identities, tavroapi::IscsiFunction,
                                                 &tavroapi::FunctionIdentity::functionType);
            if (found != functions.identities.end()) {
                keyText = found->keyText;
                return status;
            }
        }
    }
    return status;
}

}  // namespace tavro
