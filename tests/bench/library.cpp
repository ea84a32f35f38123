// A management library that only hands out records, so that what is measured is the program.
#include <iterator>
#include <string_view>

#include "entries.h"
#include "tavroapi/exported_functions.h"
#include "tavroapi/inventory_records.h"
#include "tavroapi/iscsi_storage_records.h"

namespace {

void FillPortals(std::list<tavroapi::PortalEntry>& portals) {
    const std::size_t count = bench::Count();
    for (std::size_t entry = 0; entry < count; ++entry) {
        portals.push_back({bench::PortalAddress(entry), bench::PortalPort()});
    }
}

void FillTargets(std::list<tavroapi::TargetRecord>& targets) {
    const std::size_t count = bench::Count();
    for (std::size_t entry = 0; entry < count; ++entry) {
        tavroapi::TargetRecord& target = targets.emplace_back();
        target.name = bench::TargetName(entry);
        target.connectionState = bench::TargetState();
        target.discovery = bench::TargetDiscovery();
    }
}

std::uint32_t TypeOf(const bench::Function& function) {
    const std::string_view protocol = function.protocol;
    if (protocol == "Ethernet") {
        return tavroapi::EthernetFunction;
    }
    return protocol == "FCoE" ? tavroapi::FcoeFunction : tavroapi::IscsiFunction;
}

}  // namespace

extern "C" {

std::uint32_t TAVROAPI_Initialize(std::uint32_t, std::wstring*) {
    return 0;
}

std::uint32_t TAVROAPI_Uninitialize() {
    return 0;
}

std::uint32_t TAVROAPI_GetHostName(std::string* name) {
    *name = bench::HostName;
    return 0;
}

std::uint32_t TAVROAPI_GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>* adapters) {
    tavroapi::AdapterRecord& adapter = adapters->emplace_back();
    adapter.name = bench::AdapterName;
    adapter.number = 1;
    adapter.portNames.assign(std::begin(bench::PortNames), std::end(bench::PortNames));
    return 0;
}

std::uint32_t TAVROAPI_GetPortWWNs(std::string*, std::string*,
                                   std::list<tavroapi::FunctionAddress>* addresses,
                                   std::list<tavroapi::FunctionIdentity>* identities) {
    for (const bench::Function& function : bench::Functions) {
        addresses->push_back({function.key, function.address, function.number});
        identities->push_back({function.key, TypeOf(function), bench::SecondText});
    }
    return 0;
}

std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    *text = bench::MessageText(messageId);
    return 0;
}

std::uint32_t TAVROAPI_DoOperation(std::uint32_t operation, std::string*, void*, void* output) {
    switch (static_cast<tavroapi::OperationCode>(operation)) {
        case tavroapi::OperationCode::ListPortals:
            FillPortals(*static_cast<std::list<tavroapi::PortalEntry>*>(output));
            return 0;
        case tavroapi::OperationCode::ListTargets:
            FillTargets(*static_cast<std::list<tavroapi::TargetRecord>*>(output));
            return 0;
        case tavroapi::OperationCode::ReadAdapterState:
            *static_cast<std::wstring*>(output) = L"1";
            return 0;
        default:
            return 1;
    }
}

}  // extern "C"
