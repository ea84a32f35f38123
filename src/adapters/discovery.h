#pragma once

#include <cstdint>
#include <string>

#include "adapters/inventory.h"

namespace tavro {

// What discovery returns when it failed or found no supported adapter.
inline constexpr std::int32_t NoAdapterState = 7;

// Reads the host name, the adapters, and the state of the first supported adapter that tells it (a
// supported adapter's name holds one of the known model designations). Failures are reported on the
// console at once; the result is then `NoAdapterState`.
std::int32_t DiscoverAdapters(EntryCache& cache);

// Finds the first iSCSI function on any adapter, for the commands that act on the host as a whole.
// Returns a status, 0 for success; `keyText` stays empty when there is no such function.
std::uint32_t FindIscsiFunction(EntryCache& cache, std::string& keyText);

}  // namespace tavro
