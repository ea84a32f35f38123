#pragma once

#include <cstdint>
#include <string>

#include "library/calls/call.h"
#include "library/calls/outcome.h"

// The refusals that every library gives in the same words.
namespace tavrolib {

// The refusal of a call that wants the library initialized.
Outcome NotInitialized();

// The refusal of an operation that nobody serves.
Outcome UnknownOperation(std::uint32_t code);

// The refusal of a request that names no function of the wanted kind ("Ethernet", "iSCSI", "FCoE",
// or empty for any).
Outcome UnknownIdentifier(const std::string& request, const std::wstring& kind = {});

// Done when the call has everything that it needs to be served: for DoOperation a described
// operation and its records, else what it fills in. Otherwise the refusal.
Outcome CheckArguments(const Call& call);

}  // namespace tavrolib
