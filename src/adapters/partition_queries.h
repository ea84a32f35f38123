#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tavro {

// The library's queries about how an adapter is divided. Each is nothing when the library has no
// such entry point, or none for operations, which is looked up first. Whether the library answered
// is not examined: the numbers start at 0, the text is empty. `LastStatus` stays as it is.

// The partition state (1, 2 or 3) of the port with this MAC or WWN.
std::optional<std::uint32_t> GetPartitionState(const std::string& portIdentifier);

// The same, whether or not the library has an entry point for operations.
std::optional<std::uint32_t> GetPartitionStateAlone(const std::string& portIdentifier);

// The type text, such as "CNA", of the adapter that owns this MAC.
std::optional<std::string> GetAdapterType(const std::string& mac);

// The number of ports of the adapter that owns this MAC.
std::optional<std::uint32_t> GetAdapterPortNumber(const std::string& mac);

}  // namespace tavro
