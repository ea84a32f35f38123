#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "simulator/operations.h"
#include "simulator/record_type.h"
#include "tavroapi/inventory_records.h"

namespace tavrosim {

enum class EntryPoint {
    Initialize,
    Uninitialize,
    DoOperation,
    GetLocalizeMessage,
    GetLastErrorMessage,
    GetHostName,
    GetDiscoveredAdapters,
    GetPortWWNs,
    GetPartitionState,
    GetAdapterType,
    GetAdapterPortNumber,
};

/// An entry point's name without its prefix and what it fills in; that is null where it fills in
/// nothing, and for DoOperation, where the operation tells.
struct EntryPointRow {
    EntryPoint entryPoint;
    std::string_view name;
    const RecordType* output;
};

const EntryPointRow& RowOf(EntryPoint entryPoint);

/// The entry point of that name; null when there is none.
const EntryPointRow* FindEntryPoint(std::string_view name);

/// The two lists that GetPortWWNs fills in, as one record.
struct PortFunctions {
    std::list<tavroapi::FunctionAddress> addresses;
    std::list<tavroapi::FunctionIdentity> identities;

    static constexpr auto Fields() {
        return std::tuple{tavroapi::Field{"addresses", &PortFunctions::addresses},
                          tavroapi::Field{"identities", &PortFunctions::identities}};
    }
};

/// One call as it came in: what identifies it, and its records, which may be null.
struct Call {
    EntryPoint entryPoint{};
    std::optional<std::uint32_t> operation;
    const Operation* described = nullptr;  // the operation, when its records are described
    std::optional<std::string> request;
    std::optional<std::string> adapter;
    std::optional<std::string> port;
    std::optional<std::uint32_t> debug;
    std::optional<std::wstring> locale;
    void* input = nullptr;
    void* output = nullptr;

    const RecordType* InputType() const {
        return described == nullptr ? nullptr : described->input;
    }
    const RecordType* OutputType() const {
        return described == nullptr ? RowOf(entryPoint).output : described->output;
    }
};

}  // namespace tavrosim
