#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace tavroapi {

// One member of a record: its name and where it is.
template <class Record, class Member>
struct Field {
    using MemberType = Member;
    std::string_view name;
    Member Record::*member;
};

// A fixed array whose elements each count as a field of the record, one after another.
template <class Record, class Member>
struct SpreadField {
    std::string_view name;
    Member Record::*member;
};

template <class Record, class Member>
Field(const char*, Member Record::*) -> Field<Record, Member>;
template <class Record, class Member>
SpreadField(const char*, Member Record::*) -> SpreadField<Record, Member>;

namespace detail {

// Takes any fields and does nothing with them.
struct IgnoreFields {
    template <class... AnyField>
    constexpr void operator()(const AnyField&...) const {}
};

}  // namespace detail

// A record that describes itself: `Record::Fields(visit)` calls `visit` once with all its fields,
// in contract order, and returns what that returns.
template <class Record>
concept DescribedRecord = requires {
    Record::Fields(detail::IgnoreFields{});
};

// A record in which the library leaves a completion code: `Record::CompletionCode()` is the member.
template <class Record>
concept RecordWithCompletionCode = requires {
    Record::CompletionCode();
};

// Whether the field at `position`, counted from 0 in contract order, must not be shown or logged.
// A record names such positions in `SecretPositions`; one without that list has none.
template <DescribedRecord Record>
constexpr bool IsSecretPosition(std::size_t position) {
    if constexpr (requires { Record::SecretPositions; }) {
        for (const std::size_t secret : Record::SecretPositions) {
            if (secret == position) {
                return true;
            }
        }
    }
    return false;
}

namespace detail {

template <class Record, class AnyRecord, class Member, class Visitor>
constexpr void VisitField(AnyRecord& record, const Field<Record, Member>& field,
                          std::size_t& position, Visitor& visitor) {
    visitor(position++, field.name, record.*field.member);
}

template <class Record, class AnyRecord, class Member, class Visitor>
constexpr void VisitField(AnyRecord& record, const SpreadField<Record, Member>& field,
                          std::size_t& position, Visitor& visitor) {
    for (auto& element : record.*field.member) {
        visitor(position++, field.name, element);
    }
}

}  // namespace detail

// Calls `visitor(position, name, value)` for every field of `record` in contract order; the
// elements of a spread array come one by one under the array's name. `record` may be const.
template <class AnyRecord, class Visitor>
requires DescribedRecord<std::remove_const_t<AnyRecord>>
constexpr void ForEachField(AnyRecord& record, Visitor visitor) {
    std::size_t position = 0;
    std::remove_const_t<AnyRecord>::Fields(
        [&](const auto&... field) { (detail::VisitField(record, field, position, visitor), ...); });
}

namespace detail {

template <class Record, class Member>
constexpr std::size_t PositionsOf(const Field<Record, Member>&) {
    return 1;
}

template <class Record, class Member>
constexpr std::size_t PositionsOf(const SpreadField<Record, Member>&) {
    return std::tuple_size_v<Member>;
}

}  // namespace detail

// The number of positions that `ForEachField` visits.
template <DescribedRecord Record>
constexpr std::size_t FieldCount() {
    return Record::Fields(
        [](const auto&... field) { return (detail::PositionsOf(field) + ... + 0U); });
}

// `Count` texts whose meaning is the library's own. Secret ones are named by their positions.
template <std::size_t Count, std::size_t... Secrets>
struct TextRecord {
    std::array<std::string, Count> texts;

    static constexpr std::array<std::size_t, sizeof...(Secrets)> SecretPositions{Secrets...};
    static constexpr auto Fields(auto visit) {
        return visit(SpreadField{"texts", &TextRecord::texts});
    }
};

}  // namespace tavroapi
