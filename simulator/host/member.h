#pragma once

#include <concepts>
#include <optional>
#include <string_view>

namespace tavrosim {

/// Whether a member may be missing in the host file. A missing one keeps the value that its struct
/// gives it.
enum class Presence { Required, Optional };

/// One member of a struct of the host file: its key, where it is, and whether it must be there. A
/// struct describes itself with `static constexpr auto Members()`, the tuple of its members in the
/// file's order. Members may be texts, whole numbers, bool, `std::vector`s, `std::array`s,
/// `std::map`s from texts, further such structs, and `std::optional`s of these, which stand in the
/// file only when they have a value.
template <class Struct, class Value>
struct Member {
    std::string_view key;
    Value Struct::*member;
    Presence presence = Presence::Required;
};

template <class Struct, class Value>
Member(const char*, Value Struct::*) -> Member<Struct, Value>;
template <class Struct, class Value>
Member(const char*, Value Struct::*, Presence) -> Member<Struct, Value>;

template <class Struct>
concept HostStruct = requires {
    Struct::Members();
};

}  // namespace tavrosim
