#pragma once

#include <concepts>
#include <optional>
#include <string_view>

namespace tavrosim {

// Whether a member must be there in the host file. A missing one keeps the value that its struct
// gives it. A former one is the key by which earlier files name a value that has another key now:
// it is read and never written.
enum class Presence { Optional, Required, Former };

// One member of a struct of the host file: its key, where it is, and whether it must be there. A
// struct describes itself with `static constexpr auto Members(auto visit)`, which calls `visit`
// once with all its members, in the file's order, and returns what that returns. Members may be
// texts, whole numbers, bool, `std::vector`s, `std::array`s, further such structs, and
// `std::optional`s of these, which stand in the file only when they have a value.
template <class Struct, class Value>
struct Member {
    std::string_view key;
    Value Struct::*member;
    Presence presence = Presence::Optional;
};

template <class Struct, class Value>
Member(const char*, Value Struct::*) -> Member<Struct, Value>;
template <class Struct, class Value>
Member(const char*, Value Struct::*, Presence) -> Member<Struct, Value>;

namespace detail {

// Takes any members and does nothing with them.
struct IgnoreMembers {
    template <class... AnyMember>
    constexpr void operator()(const AnyMember&...) const {}
};

}  // namespace detail

template <class Struct>
concept HostStruct = requires {
    Struct::Members(detail::IgnoreMembers{});
};

}  // namespace tavrosim
