#include "simulator/answers/result_records.h"

#include <array>
#include <cstdint>

#include "simulator/answers/merge.h"
#include "tavroapi/described_operations.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;

template <class Record, class Keys>
constexpr ResultRecords Treat() {
    return {[](const void* record) -> std::shared_ptr<void> {
                return std::make_shared<Record>(*static_cast<const Record*>(record));
            },
            [](const void* one, const void* other) {
                return IsSame(*static_cast<const Record*>(one), *static_cast<const Record*>(other));
            },
            [](const void* captured, const void* before, const void* now, void* merged) {
                *static_cast<Record*>(merged) = Merged<Keys>(*static_cast<const Record*>(captured),
                                                             *static_cast<const Record*>(before),
                                                             *static_cast<const Record*>(now));
            }};
}

struct OperationRow {
    OperationCode code;
    ResultRecords records;
};

template <OperationCode Code>
constexpr OperationRow Row() {
    using Record = tavroapi::OutputOf<Code>;
    if constexpr (std::same_as<Record, tavroapi::NoRecord>) {
        return {Code, {}};
    } else {
        return {Code, Treat<Record, ElementKeysOf<Code>>()};
    }
}

template <OperationCode... Codes>
constexpr auto MakeRows(tavroapi::OperationList<Codes...>) {
    return std::array{Row<Codes>()...};
}

constexpr auto OperationRows = MakeRows(tavroapi::DescribedOperations{});

template <EntryPoint Entry>
constexpr ResultRecords Queried = Treat<tavrolib::FilledType<Entry>, ElementKeys>();

const ResultRecords* QueriedRecords(EntryPoint entryPoint) {
    switch (entryPoint) {
        case EntryPoint::GetHostName:
            return &Queried<EntryPoint::GetHostName>;
        case EntryPoint::GetDiscoveredAdapters:
            return &Queried<EntryPoint::GetDiscoveredAdapters>;
        case EntryPoint::GetPortWWNs:
            return &Queried<EntryPoint::GetPortWWNs>;
        case EntryPoint::GetPartitionState:
            return &Queried<EntryPoint::GetPartitionState>;
        case EntryPoint::GetAdapterType:
            return &Queried<EntryPoint::GetAdapterType>;
        case EntryPoint::GetAdapterPortNumber:
            return &Queried<EntryPoint::GetAdapterPortNumber>;
        default:
            return nullptr;
    }
}

}  // namespace

const ResultRecords* ResultRecordsOf(const Call& call) {
    if (call.entryPoint != EntryPoint::DoOperation) {
        return QueriedRecords(call.entryPoint);
    }
    for (const OperationRow& row : OperationRows) {
        if (call.operation == static_cast<std::uint32_t>(row.code)) {
            return row.records.copy == nullptr ? nullptr : &row.records;
        }
    }
    return nullptr;
}

}  // namespace tavrosim
