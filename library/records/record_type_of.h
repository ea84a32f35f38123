#pragma once

#include <limits>

#include "library/records/record_json.h"
#include "library/records/record_type.h"
#include "tavroapi/operations.h"

namespace tavrolib {

namespace detail {

template <class Record>
constexpr RecordType MakeRecordType() {
    RecordType type{};
    type.toJson = [](const void* record, Secrets secrets) {
        return ToJson(*static_cast<const Record*>(record), secrets);
    };
    // A byte-packed record is only ever an input. The program places it so that its texts are
    // aligned, which a scratch record here would not be.
    if constexpr (alignof(Record) > 1) {
        type.fill = [](const Json& values, void* record, const Place& place) {
            FillFromJson(values, *static_cast<Record*>(record), place);
        };
        type.check = [](const Json& values, const Place& place) {
            Record scratch{};
            FillFromJson(values, scratch, place);
        };
    }
    if constexpr (tavroapi::RecordWithCompletionCode<Record>) {
        type.completionCode = [](const void* record) {
            return static_cast<std::int64_t>(
                static_cast<const Record*>(record)->*Record::CompletionCode());
        };
        type.setCompletionCode = [](void* record, std::int64_t code) {
            auto& member = static_cast<Record*>(record)->*Record::CompletionCode();
            member = static_cast<std::remove_reference_t<decltype(member)>>(code);
        };
    }
    return type;
}

// A zero-terminated character string is its own record.
template <>
constexpr RecordType MakeRecordType<tavroapi::CharacterString>() {
    RecordType type{};
    type.toJson = [](const void* text, Secrets) {
        return Json(Utf8FromBytes(static_cast<const char*>(text)));
    };
    return type;
}

template <class Record>
inline constexpr RecordType TheRecordType = MakeRecordType<Record>();

}  // namespace detail

// The handling of `Record`, which is any input or output type of the contract; null for no record.
template <class Record>
constexpr const RecordType* RecordTypeOf() {
    if constexpr (std::same_as<Record, tavroapi::NoRecord>) {
        return nullptr;
    } else {
        return &detail::TheRecordType<Record>;
    }
}

}  // namespace tavrolib
