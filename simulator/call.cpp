#include "simulator/call.h"

#include <array>

#include "simulator/record_type_of.h"

namespace tavrosim {
namespace {

constexpr std::array Rows{
    EntryPointRow{EntryPoint::Initialize, "Initialize", nullptr},
    EntryPointRow{EntryPoint::Uninitialize, "Uninitialize", nullptr},
    EntryPointRow{EntryPoint::DoOperation, "DoOperation", nullptr},
    EntryPointRow{EntryPoint::GetLocalizeMessage, "GetLocalizeMessage",
                  RecordTypeOf<std::wstring>()},
    EntryPointRow{EntryPoint::GetLastErrorMessage, "GetLastErrorMessage",
                  RecordTypeOf<tavroapi::ErrorRecord>()},
    EntryPointRow{EntryPoint::GetHostName, "GetHostName", RecordTypeOf<std::string>()},
    EntryPointRow{EntryPoint::GetDiscoveredAdapters, "GetDiscoveredAdapters",
                  RecordTypeOf<std::list<tavroapi::AdapterRecord>>()},
    EntryPointRow{EntryPoint::GetPortWWNs, "GetPortWWNs", RecordTypeOf<PortFunctions>()},
    EntryPointRow{EntryPoint::GetPartitionState, "GetPartitionState",
                  RecordTypeOf<std::uint32_t>()},
    EntryPointRow{EntryPoint::GetAdapterType, "GetAdapterType", RecordTypeOf<std::string>()},
    EntryPointRow{EntryPoint::GetAdapterPortNumber, "GetAdapterPortNumber",
                  RecordTypeOf<std::uint32_t>()},
};

constexpr bool InEnumerationOrder() {
    for (std::size_t i = 0; i < Rows.size(); ++i) {
        if (static_cast<std::size_t>(Rows[i].entryPoint) != i) {
            return false;
        }
    }
    return true;
}

static_assert(InEnumerationOrder());

}  // namespace

const EntryPointRow& RowOf(EntryPoint entryPoint) {
    return Rows[static_cast<std::size_t>(entryPoint)];
}

const EntryPointRow* FindEntryPoint(std::string_view name) {
    for (const EntryPointRow& row : Rows) {
        if (row.name == name) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace tavrosim
