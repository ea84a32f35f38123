#pragma once

#include <list>
#include <string>

#include "mgmt/operation.h"
#include "tavroapi/entry_points.h"

namespace tavro {

// The library's inventory entry points, filled in as they are resolved. Owned by the main flow and
// handed to whatever asks for the host's adapters.
struct EntryCache {
    tavroapi::GetHostNameEntry::Function* getHostName = nullptr;
    tavroapi::GetDiscoveredAdaptersEntry::Function* getDiscoveredAdapters = nullptr;
    tavroapi::GetPortWWNsEntry::Function* getPortWWNs = nullptr;
};

// The host's name as the library last reported it.
extern std::string HostName;

// One function of a port: the two records that the library keeps of it.
struct PortFunction {
    tavroapi::FunctionAddress address;
    tavroapi::FunctionIdentity identity;
};

// Asks the library for the host's name and keeps it in `HostName`.
CallOutcome ReadHostName(EntryCache& cache);

// Asks the library for the host's adapters; `adapters` holds them when the outcome is `Done`.
CallOutcome ReadAdapters(EntryCache& cache, std::list<tavroapi::AdapterRecord>& adapters);

// Asks the library for the functions of one port; `functions` holds them when the outcome is
// `Done`.
CallOutcome ReadPortFunctions(EntryCache& cache, const std::string& adapterName,
                              const std::string& portName, std::list<PortFunction>& functions);

}  // namespace tavro
