#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "simulator/host/host.h"

// Finding the function that a request names. Identifiers are compared by their hexadecimal digits:
// case and the separators "-" and ":" do not matter.
namespace tavrosim {

// What a MAC and a WWN are made of.
inline constexpr std::size_t MacDigits = 12;
inline constexpr std::size_t WwnDigits = 16;

// The identifier in lower case without separators; empty when it is neither a MAC nor a WWN.
std::string NormalIdentifier(std::string_view text);

// The text by which commands address the function: the port WWN of an FCoE function, else the MAC.
const std::string& KeyOf(const Function& function);

// A function and what it belongs to; pointers into the host that was searched, const if that was.
template <class AnyHost>
struct Located {
    template <class T>
    using Like = std::conditional_t<std::is_const_v<AnyHost>, const T, T>;
    Like<Adapter>* adapter = nullptr;
    Like<Port>* port = nullptr;
    Like<Function>* function = nullptr;

    explicit operator bool() const { return function != nullptr; }
};

// The function with that MAC or, an FCoE function, that port WWN.
template <class AnyHost>
Located<AnyHost> FindFunction(AnyHost& host, std::string_view identifier) {
    const std::string wanted = NormalIdentifier(identifier);
    if (wanted.empty()) {
        return {};
    }
    for (auto& adapter : host.adapters) {
        for (auto& port : adapter.ports) {
            for (auto& function : port.functions) {
                if (NormalIdentifier(function.mac) == wanted ||
                    (function.fcoe && NormalIdentifier(function.fcoe->portWwn) == wanted)) {
                    return {&adapter, &port, &function};
                }
            }
        }
    }
    return {};
}

// What makes a function one of its kind; the function itself where any kind will do. The function
// must be of that kind.
template <class Part, class AnyFunction>
auto& PartOf(AnyFunction& function) {
    if constexpr (std::same_as<Part, EthernetPart>) {
        return *function.ethernet;
    } else if constexpr (std::same_as<Part, IscsiPart>) {
        return *function.iscsi;
    } else if constexpr (std::same_as<Part, FcoePart>) {
        return *function.fcoe;
    } else {
        static_assert(std::same_as<Part, Function>);
        return function;
    }
}

// The function of that kind which the identifier names: an FCoE function by its port WWN, an
// Ethernet or iSCSI function by its MAC, any function by either.
template <class Part, class AnyHost>
Located<AnyHost> FindFunctionWith(AnyHost& host, std::string_view identifier) {
    const Located<AnyHost> found = FindFunction(host, identifier);
    if (!found) {
        return {};
    }
    const Function& function = *found.function;
    bool isWanted = true;
    if constexpr (std::same_as<Part, EthernetPart>) {
        isWanted = function.ethernet.has_value();
    } else if constexpr (std::same_as<Part, IscsiPart>) {
        isWanted = function.iscsi.has_value();
    } else if constexpr (std::same_as<Part, FcoePart>) {
        isWanted = function.fcoe &&
                   NormalIdentifier(function.fcoe->portWwn) == NormalIdentifier(identifier);
    }
    return isWanted ? found : Located<AnyHost>{};
}

}  // namespace tavrosim
