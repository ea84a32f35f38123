#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>

#include "library/calls/outcome.h"
#include "library/calls/refusals.h"
#include "library/calls/with_records.h"
#include "library/text/text.h"
#include "linux/inventory/machine.h"
#include "linux/messages/error_texts.h"
#include "linux/state/state.h"
#include "tavroapi/operations.h"

// How operations are served on this machine. A family of commands writes its functions in its own
// room, as plain functions with the records of the contract, and lists them there in rows.
//
// clang-format off
//     Outcome ReadPort(const Place& at, EthernetPortInfo& info);
//     Outcome SetTcpIp(const Place& at, const TcpIpSettings& wanted);
//     Outcome ReadInitiator(const Site& site, InitiatorRecord& initiator);
//     constexpr Operation Rows[] = {
//         OnFunction<OperationCode::ReadEthernetPort, FunctionKind::Ethernet, ReadPort>(),
//         OnHost<OperationCode::ReadInitiator, ReadInitiator>(),
//         NotOffered<OperationCode::ReadDcbInfo>(L"data center bridging is left to the driver"),
//     };
// clang-format on
//
// A function may throw SystemFailure and FileError; the provider makes a refusal of it. A row whose
// function does not fit the operation's records does not compile.
namespace tavrolinux {

using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::Status;
using tavrolib::WideFromUtf8;

// Where operations work: the machine, and what this library keeps of it.
struct Site {
    const Machine& machine;
    StateStore& state;
};

// The function that a request named, and what it belongs to.
struct Place : Site {
    const Adapter& adapter;
    const Interface& interface;
};

// One operation.
struct Operation {
    tavroapi::OperationCode code;
    Outcome (*serve)(const Site& site, const std::string& request, void* input, void* output);
    const wchar_t* missing;  // what this host has not; null where `serve` is there
};

// The place that the request names as a function of that kind, handed to `serve`; else the refusal:
// it names none, or several.
template <class Serve>
Outcome AtFunction(const Site& site, const std::string& request, FunctionKind kind, Serve serve);

// The refusal of a request that names several functions, all of which it tells.
Outcome RefuseAmbiguous(const std::string& request, std::span<const Machine::Found> found);

template <class Serve>
Outcome AtFunction(const Site& site, const std::string& request, FunctionKind kind, Serve serve) {
    const auto found = site.machine.Find(request, kind);
    if (found.empty()) {
        return tavrolib::UnknownIdentifier(request, kind);
    }
    if (found.size() > 1) {
        return RefuseAmbiguous(request, found);
    }
    return serve(Place{site, *found.front().adapter, *found.front().interface});
}

namespace detail {

template <tavroapi::OperationCode Code, FunctionKind Kind, auto Function>
Outcome ServeOnFunction(const Site& site, const std::string& request, void* input, void* output) {
    return AtFunction(site, request, Kind, [&](const Place& at) {
        return tavrolib::WithRecords<Code>(
            input, output, [&](auto&&... records) { return Function(at, records...); });
    });
}

template <tavroapi::OperationCode Code, auto Function>
Outcome ServeOnHost(const Site& site, const std::string& /*request*/, void* input, void* output) {
    return tavrolib::WithRecords<Code>(
        input, output, [&](auto&&... records) { return Function(site, records...); });
}

}  // namespace detail

// The row of an operation on one function.
template <tavroapi::OperationCode Code, FunctionKind Kind, auto Function>
constexpr Operation OnFunction() {
    return {Code, &detail::ServeOnFunction<Code, Kind, Function>, nullptr};
}

// The row of an operation on the host as a whole.
template <tavroapi::OperationCode Code, auto Function>
constexpr Operation OnHost() {
    return {Code, &detail::ServeOnHost<Code, Function>, nullptr};
}

// The row of an operation that this host refuses; `missing` names what it has not.
template <tavroapi::OperationCode Code>
constexpr Operation NotOffered(const wchar_t* missing) {
    return {Code, nullptr, missing};
}

// The operation of that number; null when there is none.
const Operation* FindOperation(std::uint32_t code);

// The rows of each family.
std::span<const Operation> EthernetPortOperations();
std::span<const Operation> EthernetStatisticsOperations();
std::span<const Operation> AdapterSettingsOperations();
std::span<const Operation> TcpIpOperations();
std::span<const Operation> InitiatorOperations();
std::span<const Operation> IscsiPortOperations();
std::span<const Operation> IscsiStorageOperations();
std::span<const Operation> FcoeOperations();
std::span<const Operation> OtherOperations();

}  // namespace tavrolinux
