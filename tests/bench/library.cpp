// A management library that knows nothing but long lists, so that what is measured is the program.
#include "entries.h"
#include "tavroapi/exported_functions.h"
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

}  // namespace

extern "C" {

std::uint32_t TAVROAPI_Initialize(std::uint32_t, std::wstring*) {
    return 0;
}

std::uint32_t TAVROAPI_Uninitialize() {
    return 0;
}

std::uint32_t TAVROAPI_GetHostName(std::string*) {
    return 0;
}

std::uint32_t TAVROAPI_GetDiscoveredAdapters(std::list<tavroapi::AdapterRecord>*) {
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
        default:
            return 1;
    }
}

}  // extern "C"
