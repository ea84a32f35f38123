#include "library/calls/call.h"

#include <array>

#include "library/records/record_type_of.h"

namespace tavrolib {
namespace {

constexpr const wchar_t* Result = L"result";

template <EntryPoint Entry>
constexpr EntryPointRow Fills(std::string_view name, const wchar_t* filled) {
    return {Entry, name, RecordTypeOf<FilledType<Entry>>(), filled};
}

constexpr std::array Rows{
    EntryPointRow{EntryPoint::Initialize, "Initialize", nullptr, nullptr},
    EntryPointRow{EntryPoint::Uninitialize, "Uninitialize", nullptr, nullptr},
    EntryPointRow{EntryPoint::DoOperation, "DoOperation", nullptr, nullptr},
    Fills<EntryPoint::GetLocalizeMessage>("GetLocalizeMessage", nullptr),
    Fills<EntryPoint::GetLastErrorMessage>("GetLastErrorMessage", nullptr),
    Fills<EntryPoint::GetHostName>("GetHostName", L"host name"),
    Fills<EntryPoint::GetDiscoveredAdapters>("GetDiscoveredAdapters", L"adapter list"),
    Fills<EntryPoint::GetPortWWNs>("GetPortWWNs", L"function list"),
    Fills<EntryPoint::GetPartitionState>("GetPartitionState", Result),
    Fills<EntryPoint::GetAdapterType>("GetAdapterType", Result),
    Fills<EntryPoint::GetAdapterPortNumber>("GetAdapterPortNumber", Result),
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

}  // namespace tavrolib
