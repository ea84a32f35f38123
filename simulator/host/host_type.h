#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "simulator/host/member.h"

// What the values of a host file are, as tables: one walk over them reads and writes every struct.
namespace tavrosim {

struct HostType;

// One member of a struct. An optional member is told by the value in it.
struct HostMember {
    std::string_view key;
    Presence presence = Presence::Optional;
    const HostType* type = nullptr;
    const void* (*find)(const void* owner) = nullptr;  // null while an optional has no value
    void* (*make)(void* owner) = nullptr;              // an optional gets a new value
};

// The values of one type. What another shape has is empty or null.
struct HostType {
    enum class Shape { Text, Truth, Number, Struct, List };
    Shape shape = Shape::Text;

    // A number: what it may be, at most what 64 bits with a sign hold.
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
    bool isSigned = false;
    std::uint64_t (*number)(const void* value) = nullptr;
    void (*setNumber)(void* value, std::int64_t number) = nullptr;

    std::span<const HostMember> members;

    // A list: its elements lie one after another. `resize` gives a list of that many new elements,
    // an array only its first element; `most` is what it can hold.
    const HostType* element = nullptr;
    std::size_t elementSize = 0;
    std::size_t most = 0;
    std::size_t (*size)(const void* list) = nullptr;
    const void* (*first)(const void* list) = nullptr;
    void* (*resize)(void* list, std::size_t count) = nullptr;
};

namespace detail {

template <class T>
struct ValueIn {
    using Type = T;
    static constexpr bool IsOptional = false;
};
template <class T>
struct ValueIn<std::optional<T>> {
    using Type = T;
    static constexpr bool IsOptional = true;
};

template <class T>
inline constexpr bool IsVector = false;
template <class T>
inline constexpr bool IsVector<std::vector<T>> = true;

template <class T>
constexpr HostType MakeHostType();
template <class T>
inline constexpr HostType TheHostType = MakeHostType<T>();

template <class Struct>
inline constexpr auto MemberRows = Struct::Members([](const auto&... rows) {
    return std::tuple{rows...};
});

template <class Struct, std::size_t Index>
struct MemberAt {
    static constexpr auto Row = std::get<Index>(MemberRows<Struct>);
    using Value = std::remove_cvref_t<decltype(std::declval<Struct&>().*Row.member)>;

    static const void* Find(const void* owner) {
        const Value& value = static_cast<const Struct*>(owner)->*Row.member;
        if constexpr (ValueIn<Value>::IsOptional) {
            return value ? &*value : nullptr;
        } else {
            return &value;
        }
    }

    static void* Make(void* owner) {
        Value& value = static_cast<Struct*>(owner)->*Row.member;
        if constexpr (ValueIn<Value>::IsOptional) {
            return &value.emplace();
        } else {
            return &value;
        }
    }

    static constexpr HostMember Described() {
        return {Row.key, Row.presence, &TheHostType<typename ValueIn<Value>::Type>, Find, Make};
    }
};

template <class Struct, std::size_t... Indices>
constexpr auto DescribeMembers(std::index_sequence<Indices...>) {
    return std::array{MemberAt<Struct, Indices>::Described()...};
}

template <class Struct>
inline constexpr auto MembersOf = DescribeMembers<Struct>(
    std::make_index_sequence<
        std::tuple_size_v<std::remove_cvref_t<decltype(MemberRows<Struct>)>>>{});

template <class T>
constexpr void DescribeNumber(HostType& type) {
    using Limits = std::numeric_limits<T>;
    type.shape = HostType::Shape::Number;
    type.lowest = static_cast<std::int64_t>(Limits::min());
    type.highest = std::in_range<std::int64_t>(Limits::max())
                       ? static_cast<std::int64_t>(Limits::max())
                       : std::numeric_limits<std::int64_t>::max();
    type.isSigned = Limits::is_signed;
    type.number = [](const void* value) {
        return static_cast<std::uint64_t>(*static_cast<const T*>(value));
    };
    type.setNumber = [](void* value, std::int64_t number) {
        *static_cast<T*>(value) = static_cast<T>(number);
    };
}

template <class List>
constexpr void DescribeList(HostType& type) {
    using Element = typename List::value_type;
    type.shape = HostType::Shape::List;
    type.element = &TheHostType<Element>;
    type.elementSize = sizeof(Element);
    type.size = [](const void* list) { return static_cast<const List*>(list)->size(); };
    type.first = [](const void* list) -> const void* {
        return static_cast<const List*>(list)->data();
    };
    if constexpr (IsVector<List>) {
        type.most = std::numeric_limits<std::size_t>::max();
        type.resize = [](void* value, std::size_t count) -> void* {
            auto& list = *static_cast<List*>(value);
            list.clear();
            list.resize(count);
            return list.data();
        };
    } else {
        type.most = std::tuple_size_v<List>;
        type.resize = [](void* value, std::size_t) -> void* {
            return static_cast<List*>(value)->data();
        };
    }
}

template <class T>
constexpr HostType MakeHostType() {
    HostType type;
    if constexpr (std::same_as<T, bool>) {
        type.shape = HostType::Shape::Truth;
    } else if constexpr (std::integral<T>) {
        DescribeNumber<T>(type);
    } else if constexpr (HostStruct<T>) {
        type.shape = HostType::Shape::Struct;
        type.members = MembersOf<T>;
    } else if constexpr (!std::same_as<T, std::string>) {
        DescribeList<T>(type);
    }
    return type;
}

}  // namespace detail

// The description of `T`, a struct of the host file or anything that stands in one.
template <class T>
constexpr const HostType& HostTypeOf() {
    return detail::TheHostType<T>;
}

}  // namespace tavrosim
