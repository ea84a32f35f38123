#pragma once

#include <list>
#include <string>

#include "mgmt/entry_cache.h"
#include "mgmt/operation.h"

namespace tavro {

// The host's name as the library last reported it.
extern std::string HostName;

// The functions of a port: the two lists that the library keeps of them, in the same order.
struct PortFunctions {
    std::list<tavroapi::FunctionAddress> addresses;
    std::list<tavroapi::FunctionIdentity> identities;
};

// Walks both lists in step and calls `visit(address, identity)` for each function until it returns
// true. Returns whether it did.
template <class Visitor>
bool VisitFunctions(const PortFunctions& functions, Visitor visit) {
    auto identity = functions.identities.begin();
    for (const tavroapi::FunctionAddress& address : functions.addresses) {
        if (identity == functions.identities.end()) {
            break;
        }
        if (visit(address, *identity++)) {
            return true;
        }
    }
    return false;
}

// Asks the library for the host's name and keeps it in `HostName`.
CallOutcome ReadHostName(EntryCache& cache);

// Asks the library for the host's adapters; `adapters` holds them when the outcome is `Done`.
CallOutcome ReadAdapters(EntryCache& cache, std::list<tavroapi::AdapterRecord>& adapters);

// Asks the library for the functions of one port; `functions` holds them when the outcome is
// `Done`.
CallOutcome ReadPortFunctions(EntryCache& cache, const std::string& adapterName,
                              const std::string& portName, PortFunctions& functions);

}  // namespace tavro
