#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

#include "simulator/host/host.h"
#include "simulator/outcome.h"
#include "tavroapi/operations.h"

/// How the model serves operations. A family of commands writes its model functions in one source
/// file, as plain functions with the records of the contract, and lists them there in rows:
///
///     Outcome ListPortals(const Host& host, const std::string& request, std::list<PortalRecord>&
///     portals); Outcome AddPortal(Host& host, const std::string& request, const PortalRecord&
///     portal); constexpr OperationModel Rows[] = {Reads<OperationCode::ListPortals,
///     ListPortals>(),
///                                        Changes<OperationCode::AddPortal, AddPortal>()};
///
/// A function takes the host, the request, the input where the operation has one (a `const
/// std::string&` for a character string; a record with a completion code may be taken as non-const,
/// to set it), and the result record where there is one. A row whose function does not fit the
/// operation's records does not compile.
namespace tavrosim {

/// One operation's model function. Exactly one of the two is there.
struct OperationModel {
    tavroapi::OperationCode code;
    /// Works on the host as it was read when the library was initialized.
    Outcome (*read)(const Host& host, const std::string& request, void* input, void* output);
    /// Works on a fresh copy of the host, which is stored when it returns Done and dropped
    /// otherwise.
    Outcome (*change)(Host& host, const std::string& request, void* input, void* output);
};

/// The refusal of a call that lacks a record it needs.
Outcome MissingArgument(const wchar_t* what);

/// The refusal of a request that names no function of the wanted kind ("Ethernet", "iSCSI", "FCoE",
/// or empty for any).
Outcome UnknownIdentifier(const std::string& request, const std::wstring& kind = {});

namespace detail {

template <auto Function, class AnyHost, class... Result>
Outcome CallWithInput(AnyHost& host, const std::string& request, const char* text,
                      Result&... result) {
    return Function(host, request, std::string(text), result...);
}

template <auto Function, class AnyHost, class Input, class... Result>
Outcome CallWithInput(AnyHost& host, const std::string& request, Input* input, Result&... result) {
    return Function(host, request, *input, result...);
}

template <tavroapi::OperationCode Code, auto Function, class AnyHost>
Outcome CallModel(AnyHost& host, const std::string& request, void* input, void* output) {
    using Input = tavroapi::InputOf<Code>;
    using Output = tavroapi::OutputOf<Code>;
    constexpr bool HasInput = !std::same_as<Input, tavroapi::NoRecord>;
    constexpr bool HasOutput = !std::same_as<Output, tavroapi::NoRecord>;
    using Pointer =
        std::conditional_t<std::same_as<Input, tavroapi::CharacterString>, const char*, Input*>;
    if (HasInput && input == nullptr) {
        return MissingArgument(L"input record");
    }
    if (HasOutput && output == nullptr) {
        return MissingArgument(L"result record");
    }
    if constexpr (HasInput && HasOutput) {
        return CallWithInput<Function>(host, request, static_cast<Pointer>(input),
                                       *static_cast<Output*>(output));
    } else if constexpr (HasInput) {
        return CallWithInput<Function>(host, request, static_cast<Pointer>(input));
    } else if constexpr (HasOutput) {
        return Function(host, request, *static_cast<Output*>(output));
    } else {
        return Function(host, request);
    }
}

}  // namespace detail

/// The row of an operation that changes nothing.
template <tavroapi::OperationCode Code, auto Function>
constexpr OperationModel Reads() {
    return {Code, &detail::CallModel<Code, Function, const Host>, nullptr};
}

/// The row of an operation that changes the host.
template <tavroapi::OperationCode Code, auto Function>
constexpr OperationModel Changes() {
    return {Code, nullptr, &detail::CallModel<Code, Function, Host>};
}

/// The model function of the operation; null when there is none.
const OperationModel* FindModel(std::uint32_t code);

}  // namespace tavrosim
