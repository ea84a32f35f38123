#pragma once

#include <cstdint>
#include <string>

#include "library/calls/call.h"
#include "library/calls/outcome.h"
#include "library/messages/error_texts.h"

// The refusals that every library gives in the same words.
namespace tavrolib {

// Refuses in words that all libraries have.
inline constexpr Refuser<CommonErrorTexts> Refused;

// The refusal of a call that wants the library initialized.
Outcome NotInitialized();

// The refusal of an operation that nobody serves.
Outcome UnknownOperation(std::uint32_t code);

// The kinds of functions that requests name.
enum class FunctionKind { Any, Ethernet, Iscsi, Fcoe };

// The refusal of a request that names no function of the wanted kind.
Outcome UnknownIdentifier(const std::string& request, FunctionKind kind = FunctionKind::Any);

// The refusals of a query that names an adapter, or one of its ports, which this host has not.
Outcome UnknownAdapter(const std::string& name);
Outcome UnknownPort(const std::string& adapter, const std::string& port);

// The refusal to give an iSCSI function an address that its interface has, which is named.
Outcome AddressOfInterface(const std::string& interface);

// The refusal of a text in the place of an IP address.
Outcome NotAnAddress(Status status, const std::string& text);

// The refusal of a port WWN that is that of no target which the port sees.
Outcome UnknownFcoeTarget(const std::string& portWwn);

// Done when the call has everything that it needs to be served: for DoOperation a described
// operation and its records, else what it fills in. Otherwise the refusal.
Outcome CheckArguments(const Call& call);

}  // namespace tavrolib
