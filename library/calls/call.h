#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>

#include "library/calls/operations.h"
#include "library/records/record_type.h"
#include "tavroapi/inventory_records.h"

namespace tavrolib {

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

// An entry point's name without its prefix and what it fills in; that is null where it fills in
// nothing, and for DoOperation, where the operation tells. `filled` is what a caller is told to
// lack that gives nothing to fill in; null where that is allowed.
struct EntryPointRow {
    EntryPoint entryPoint;
    std::string_view name;
    const RecordType* output;
    const wchar_t* filled;
};

const EntryPointRow& RowOf(EntryPoint entryPoint);

// The entry point of that name; null when there is none.
const EntryPointRow* FindEntryPoint(std::string_view name);

// The two lists that GetPortWWNs fills in, as one record.
struct PortFunctions {
    std::list<tavroapi::FunctionAddress> addresses;
    std::list<tavroapi::FunctionIdentity> identities;

    static constexpr auto Fields(auto visit) {
        return visit(tavroapi::Field{"addresses", &PortFunctions::addresses},
                     tavroapi::Field{"identities", &PortFunctions::identities});
    }
};

namespace detail {

template <EntryPoint Entry>
struct Filled;
template <>
struct Filled<EntryPoint::GetLocalizeMessage> {
    using Type = std::wstring;
};
template <>
struct Filled<EntryPoint::GetLastErrorMessage> {
    using Type = tavroapi::ErrorRecord;
};
template <>
struct Filled<EntryPoint::GetHostName> {
    using Type = std::string;
};
template <>
struct Filled<EntryPoint::GetDiscoveredAdapters> {
    using Type = std::list<tavroapi::AdapterRecord>;
};
template <>
struct Filled<EntryPoint::GetPortWWNs> {
    using Type = PortFunctions;
};
template <>
struct Filled<EntryPoint::GetPartitionState> {
    using Type = std::uint32_t;
};
template <>
struct Filled<EntryPoint::GetAdapterType> {
    using Type = std::string;
};
template <>
struct Filled<EntryPoint::GetAdapterPortNumber> {
    using Type = std::uint32_t;
};

}  // namespace detail

// The type of what an entry point fills in, which is not there for those that fill in nothing and
// for DoOperation.
template <EntryPoint Entry>
using FilledType = typename detail::Filled<Entry>::Type;

// One call as it came in: what identifies it, and its records, which may be null.
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
    bool isComplete = true;  // false where the caller gave nothing to fill in

    const RecordType* InputType() const {
        return described == nullptr ? nullptr : described->input;
    }
    const RecordType* OutputType() const {
        return described == nullptr ? RowOf(entryPoint).output : described->output;
    }
};

// What a call of `Entry` that is complete fills in.
template <EntryPoint Entry>
FilledType<Entry>& FilledBy(const Call& call) {
    return *static_cast<FilledType<Entry>*>(call.output);
}

}  // namespace tavrolib
