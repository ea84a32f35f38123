#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "mgmt/library.h"
#include "tavroapi/operations.h"

namespace tavro {

// The status of the most recent library call, 0 for success. Written by every call of the library
// except those that say otherwise.
extern std::uint32_t LastStatus;

// The request of an operation that concerns the host as a whole, no port of it.
inline const std::string WholeHost;

// How a call of the library ended. Commands react differently to a missing entry point and to a
// failure.
enum class CallOutcome { NotResolved, Failed, Done };

// What becomes of a call's status.
enum class StatusUse { Store, Ignore };

// Calls an entry point through its resolved address and stores its status in `LastStatus`. A null
// address is `NotResolved` and stores nothing.
template <class Function, class... Arguments>
CallOutcome CallEntryPoint(Function* entry, Arguments... arguments) {
    if (entry == nullptr) {
        return CallOutcome::NotResolved;
    }
    LastStatus = CallLibrary(entry, arguments...);
    return LastStatus == 0 ? CallOutcome::Done : CallOutcome::Failed;
}

// Whether operations can be performed at all, for commands that do something before the call which
// is pointless without it.
inline bool CanDoOperation() {
    return ResolveEntryPoint<tavroapi::DoOperationEntry>() != nullptr;
}

namespace detail {

CallOutcome DoOperation(tavroapi::OperationCode code, const std::string& request, void* input,
                        void* output, StatusUse statusUse);

// The contract passes inputs by plain address; the library only reads them, or writes its
// completion code into a record that the caller made for that.
template <class Record>
void* InputAddress(Record& input) {
    if constexpr (std::is_same_v<std::remove_const_t<Record>, std::string>) {
        return const_cast<char*>(input.c_str());
    } else {
        return &input;
    }
}

// What the caller passes as an operation's input.
template <tavroapi::OperationCode Code>
using Input = std::conditional_t<std::is_same_v<tavroapi::InputOf<Code>, tavroapi::CharacterString>,
                                 const std::string, tavroapi::InputOf<Code>>;

template <tavroapi::OperationCode Code>
inline constexpr bool TakesInput = !std::is_same_v<tavroapi::InputOf<Code>, tavroapi::NoRecord>;
template <tavroapi::OperationCode Code>
inline constexpr bool ReturnsOutput = !std::is_same_v<tavroapi::OutputOf<Code>, tavroapi::NoRecord>;

// The three kinds of operations that there are, by what they exchange.
template <tavroapi::OperationCode Code>
concept OnlyReturns = !TakesInput<Code> && ReturnsOutput<Code>;
template <tavroapi::OperationCode Code>
concept OnlyTakes = TakesInput<Code> && !ReturnsOutput<Code>;
template <tavroapi::OperationCode Code>
concept Exchanges = TakesInput<Code> && ReturnsOutput<Code>;

}  // namespace detail

// Performs an operation that takes no input. `request` names the port, or is `WholeHost`;
// `output` is filled by the library.
template <tavroapi::OperationCode Code>
CallOutcome DoOperation(const std::string& request, tavroapi::OutputOf<Code>& output,
                        StatusUse statusUse = StatusUse::Store) requires detail::OnlyReturns<Code> {
    return detail::DoOperation(Code, request, nullptr, &output, statusUse);
}

// Performs an operation that returns no record. The library may leave a completion code in `input`.
template <tavroapi::OperationCode Code>
CallOutcome DoOperation(const std::string& request, detail::Input<Code>& input,
                        StatusUse statusUse = StatusUse::Store) requires detail::OnlyTakes<Code> {
    return detail::DoOperation(Code, request, detail::InputAddress(input), nullptr, statusUse);
}

// Performs an operation that takes a record and fills another; both may be the same object.
template <tavroapi::OperationCode Code>
CallOutcome DoOperation(const std::string& request, detail::Input<Code>& input,
                        tavroapi::OutputOf<Code>& output,
                        StatusUse statusUse = StatusUse::Store) requires detail::Exchanges<Code> {
    return detail::DoOperation(Code, request, detail::InputAddress(input), &output, statusUse);
}

}  // namespace tavro
