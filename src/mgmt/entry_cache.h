#pragma once

#include "tavroapi/entry_points.h"

namespace tavro {

// The library's inventory entry points, filled in as they are resolved. Owned by the main flow and
// handed to whatever asks for the host's adapters.
struct EntryCache {
    tavroapi::GetHostNameEntry::Function* getHostName = nullptr;
    tavroapi::GetDiscoveredAdaptersEntry::Function* getDiscoveredAdapters = nullptr;
    tavroapi::GetPortWWNsEntry::Function* getPortWWNs = nullptr;
};

}  // namespace tavro
