#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "simulator/host/host.h"

/// Finding the function that a request names. Identifiers are compared by their hexadecimal digits:
/// case and the separators "-" and ":" do not matter.
namespace tavrosim {

/// The identifier in lower case without separators; empty when it is neither a MAC nor a WWN.
std::string NormalIdentifier(std::string_view text);

/// The text by which commands address the function: the port WWN of an FCoE function, else the MAC.
const std::string& KeyOf(const Function& function);

/// A function and what it belongs to; pointers into the host that was searched, const if that was.
template <class AnyHost>
struct Located {
    template <class T>
    using Like = std::conditional_t<std::is_const_v<AnyHost>, const T, T>;
    Like<Adapter>* adapter = nullptr;
    Like<Port>* port = nullptr;
    Like<Function>* function = nullptr;

    explicit operator bool() const { return function != nullptr; }
};

/// The function with that MAC or, an FCoE function, that port WWN.
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

/// The Ethernet function with that MAC.
template <class AnyHost>
Located<AnyHost> FindEthernetFunction(AnyHost& host, std::string_view mac) {
    const auto found = FindFunction(host, mac);
    return found && found.function->ethernet ? found : Located<AnyHost>{};
}

/// The iSCSI function with that MAC.
template <class AnyHost>
Located<AnyHost> FindIscsiFunction(AnyHost& host, std::string_view mac) {
    const auto found = FindFunction(host, mac);
    return found && found.function->iscsi ? found : Located<AnyHost>{};
}

/// The FCoE function with that port WWN.
template <class AnyHost>
Located<AnyHost> FindFcoeFunction(AnyHost& host, std::string_view portWwn) {
    const auto found = FindFunction(host, portWwn);
    return found && found.function->fcoe &&
                   NormalIdentifier(found.function->fcoe->portWwn) == NormalIdentifier(portWwn)
               ? found
               : Located<AnyHost>{};
}

}  // namespace tavrosim
