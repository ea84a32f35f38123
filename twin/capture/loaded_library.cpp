#include "twin/capture/loaded_library.h"

#include <string>

#include "mgmt/library.h"

namespace tavrohost {
namespace {

using tavrolib::EntryPoint;
using tavrolib::FilledBy;

// Calls the entry point. By contract it lets no exception out; what does come out ends this one
// call and no more.
template <class Entry, class... Arguments>
std::optional<std::uint32_t> CallEntry(Arguments... arguments) {
    auto* const entry = tavro::ResolveEntryPoint<Entry>();
    if (entry == nullptr) {
        return std::nullopt;
    }
    try {
        return entry(arguments...);
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace

std::optional<std::uint32_t> LoadedLibrary::Perform(const tavrolib::Call& call) {
    // The library may change the texts that it is given.
    std::string request = call.request.value_or("");
    std::string adapter = call.adapter.value_or("");
    std::string port = call.port.value_or("");
    switch (call.entryPoint) {
        case EntryPoint::DoOperation:
            return CallEntry<tavroapi::DoOperationEntry>(call.operation.value_or(0), &request,
                                                         call.input, call.output);
        case EntryPoint::GetHostName:
            return CallEntry<tavroapi::GetHostNameEntry>(&FilledBy<EntryPoint::GetHostName>(call));
        case EntryPoint::GetDiscoveredAdapters:
            return CallEntry<tavroapi::GetDiscoveredAdaptersEntry>(
                &FilledBy<EntryPoint::GetDiscoveredAdapters>(call));
        case EntryPoint::GetPortWWNs: {
            tavrolib::PortFunctions& functions = FilledBy<EntryPoint::GetPortWWNs>(call);
            return CallEntry<tavroapi::GetPortWWNsEntry>(&adapter, &port, &functions.addresses,
                                                         &functions.identities);
        }
        case EntryPoint::GetPartitionState:
            return CallEntry<tavroapi::GetPartitionStateEntry>(
                &request, &FilledBy<EntryPoint::GetPartitionState>(call));
        case EntryPoint::GetAdapterType:
            return CallEntry<tavroapi::GetAdapterTypeEntry>(
                &request, &FilledBy<EntryPoint::GetAdapterType>(call));
        case EntryPoint::GetAdapterPortNumber:
            return CallEntry<tavroapi::GetAdapterPortNumberEntry>(
                &request, &FilledBy<EntryPoint::GetAdapterPortNumber>(call));
        default:
            return std::nullopt;
    }
}

std::optional<tavroapi::ErrorRecord> LoadedLibrary::LastError() {
    tavroapi::ErrorRecord error;
    const auto status = CallEntry<tavroapi::GetLastErrorMessageEntry>(&error);
    return status == 0U ? std::optional(error) : std::nullopt;
}

}  // namespace tavrohost
