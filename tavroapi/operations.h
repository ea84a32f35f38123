#pragma once

#include <cstdint>
#include <string>

#include "tavroapi/operation_code.h"
#include "tavroapi/record.h"

// Which records each operation takes and returns. The program's calls and the library's handlers
// are both written against it.
namespace tavroapi {

// Stands in `OperationRecords` where an operation takes or returns nothing: the argument is null.
struct NoRecord {};

// Stands in `OperationRecords` for an input that is a plain zero-terminated character string.
struct CharacterString {};

// `OperationRecords<Code>::Input` and `::Output` name the record types of an operation.
template <OperationCode Code>
struct OperationRecords;

template <class InputRecord, class OutputRecord>
struct Exchanges {
    using Input = InputRecord;
    using Output = OutputRecord;
};

template <>
struct OperationRecords<OperationCode::ReadAdapterState> : Exchanges<NoRecord, std::wstring> {};

template <OperationCode Code>
using InputOf = typename OperationRecords<Code>::Input;
template <OperationCode Code>
using OutputOf = typename OperationRecords<Code>::Output;

// A compile-time list of operations.
template <OperationCode... Codes>
struct OperationList {};

using AdapterOperations = OperationList<OperationCode::ReadAdapterState>;

}  // namespace tavroapi
