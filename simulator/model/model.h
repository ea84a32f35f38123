#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

#include "library/calls/outcome.h"
#include "library/calls/refusals.h"
#include "library/calls/with_records.h"
#include "library/text/text.h"
#include "simulator/host/host.h"
#include "simulator/host/lookup.h"
#include "simulator/messages/error_texts.h"
#include "tavroapi/operations.h"

// How the model serves operations. A family of commands writes its model functions in one source
// file, as plain functions with the records of the contract, and lists them there in rows. A row
// says what the request has to name: the host as a whole, a function of a kind, or any function.
//
// clang-format off
//     Outcome ReadInitiator(const Host& host, InitiatorRecord& initiator);
//     Outcome ListPortals(const Viewed<IscsiPart>& at, std::list<PortalEntry>& portals);
//     Outcome AddPortal(const Edited<IscsiPart>& at, const PortalRecord& portal);
//     constexpr OperationModel Rows[] = {
//         Reads<OperationCode::ReadInitiator, Host, ReadInitiator>(),
//         Reads<OperationCode::ListPortals, IscsiPart, ListPortals>(),
//         Changes<OperationCode::AddPortal, IscsiPart, AddPortal>(),
//         Counts<OperationCode::ReadIscsiStatistics, IscsiPart, ReadStatistics, TellStatistics>(),
//     };
// clang-format on
//
// A function takes what the request named, the input where the operation has one (a `const
// std::string&` for a character string; a record with a completion code may be taken as non-const,
// to set it), and the result record where there is one. It is called when the request names what
// the row wants; otherwise the row refuses. A row whose function does not fit the operation's
// records does not compile.
namespace tavrosim {

using tavrolib::Done;
using tavrolib::FunctionKind;
using tavrolib::Outcome;
using tavrolib::Quoted;
using tavrolib::Status;
using tavrolib::Utf8FromBytes;
using tavrolib::WideFromUtf8;

// The function that a request named, and what it belongs to. `Part` is what makes it a function of
// its kind, or is Function where any kind will do.
template <class AnyHost, class Part>
struct Named {
    template <class T>
    using Like = std::conditional_t<std::is_const_v<AnyHost>, const T, T>;
    AnyHost& host;
    Like<Adapter>& adapter;
    Like<Port>& port;
    Like<Function>& function;
    Like<Part>& part;
};

// What an operation that changes nothing gets, and one that changes the host.
template <class Part>
using Viewed = Named<const Host, Part>;
template <class Part>
using Edited = Named<Host, Part>;

// One operation's model function. Exactly one of the first two is there. The records are those of
// the operation, none is missing.
struct OperationModel {
    tavroapi::OperationCode code;
    // Works on the host as it was read when the library was initialized.
    Outcome (*read)(const Host& host, const std::string& request, void* input, void* output);
    // Works on a fresh copy of the host, which is stored when it returns Done and dropped
    // otherwise.
    Outcome (*change)(Host& host, const std::string& request, void* input, void* output);
    // There too where `change` reads counters and lets them go on: tells them as they stand.
    Outcome (*tellCounters)(const Host& host, const std::string& request, void* input,
                            void* output);
};

namespace detail {

template <class Part>
inline constexpr FunctionKind KindWith = FunctionKind::Any;
template <>
inline constexpr FunctionKind KindWith<EthernetPart> = FunctionKind::Ethernet;
template <>
inline constexpr FunctionKind KindWith<IscsiPart> = FunctionKind::Iscsi;
template <>
inline constexpr FunctionKind KindWith<FcoePart> = FunctionKind::Fcoe;

// Calls `Function` with what the row wants of the host, or refuses the request.
template <class Wanted, auto Function, class AnyHost, class... Records>
Outcome CallWithWanted(AnyHost& host, const std::string& request, Records&&... records) {
    if constexpr (std::same_as<Wanted, Host>) {
        return Function(host, records...);
    } else {
        const Located<AnyHost> found = FindFunctionWith<Wanted>(host, request);
        if (!found) {
            return tavrolib::UnknownIdentifier(request, KindWith<Wanted>);
        }
        const Named<AnyHost, Wanted> at{host, *found.adapter, *found.port, *found.function,
                                        PartOf<Wanted>(*found.function)};
        return Function(at, records...);
    }
}

template <tavroapi::OperationCode Code, class Wanted, auto Function, class AnyHost>
Outcome CallModel(AnyHost& host, const std::string& request, void* input, void* output) {
    return tavrolib::WithRecords<Code>(input, output, [&](auto&&... records) {
        return CallWithWanted<Wanted, Function>(host, request, records...);
    });
}

}  // namespace detail

// The row of an operation that changes nothing. `Wanted` is Host, Function, or the part of one kind
// of function.
template <tavroapi::OperationCode Code, class Wanted, auto Function>
constexpr OperationModel Reads() {
    return {Code, &detail::CallModel<Code, Wanted, Function, const Host>, nullptr, nullptr};
}

// The row of an operation that changes the host.
template <tavroapi::OperationCode Code, class Wanted, auto Function>
constexpr OperationModel Changes() {
    return {Code, nullptr, &detail::CallModel<Code, Wanted, Function, Host>, nullptr};
}

// The row of an operation that reads counters: `Tell` tells them as they stand, `Function` lets
// them go on as well.
template <tavroapi::OperationCode Code, class Wanted, auto Function, auto Tell>
constexpr OperationModel Counts() {
    return {Code, nullptr, &detail::CallModel<Code, Wanted, Function, Host>,
            &detail::CallModel<Code, Wanted, Tell, const Host>};
}

// The model function of the operation; null when there is none.
const OperationModel* FindModel(std::uint32_t code);

}  // namespace tavrosim
