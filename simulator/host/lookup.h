#pragma once

#include <concepts>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>

#include "library/text/identifier.h"
#include "simulator/host/host.h"

// Finding the function that a request names.
namespace tavrosim {

using tavrolib::FcidDigits;
using tavrolib::MacDigits;
using tavrolib::NormalIdentifier;
using tavrolib::WwnDigits;

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

// Whether the identifier, in normal form, names the function as one of that kind: an FCoE function
// by its port WWN, an Ethernet or iSCSI function by its MAC, any function by either.
template <class Part>
bool IsNamed(const Function& function, const std::string& normal) {
    const auto hasMac = [&] { return NormalIdentifier(function.mac) == normal; };
    const auto hasWwn = [&] {
        return function.fcoe && NormalIdentifier(function.fcoe->portWwn) == normal;
    };
    if constexpr (std::same_as<Part, EthernetPart>) {
        return function.ethernet && hasMac();
    } else if constexpr (std::same_as<Part, IscsiPart>) {
        return function.iscsi && hasMac();
    } else if constexpr (std::same_as<Part, FcoePart>) {
        return hasWwn();
    } else {
        static_assert(std::same_as<Part, Function>);
        return hasMac() || hasWwn();
    }
}

// The function of that kind which the identifier names. Functions of different kinds may share an
// identifier; where any kind will do, the first of them counts.
template <class Part, class AnyHost>
Located<AnyHost> FindFunctionWith(AnyHost& host, std::string_view identifier) {
    const std::string wanted = NormalIdentifier(identifier);
    if (wanted.empty()) {
        return {};
    }
    for (auto& adapter : host.adapters) {
        for (auto& port : adapter.ports) {
            for (auto& function : port.functions) {
                if (IsNamed<Part>(function, wanted)) {
                    return {&adapter, &port, &function};
                }
            }
        }
    }
    return {};
}

// The first function, of any kind, that the identifier names.
template <class AnyHost>
Located<AnyHost> FindFunction(AnyHost& host, std::string_view identifier) {
    return FindFunctionWith<Function>(host, identifier);
}

// The FCIDs of the host's ports, physical and virtual ones, and of the targets in its fabric, in
// capitals.
std::set<std::string> FcidsInUse(const Host& host);

}  // namespace tavrosim
