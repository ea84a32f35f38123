#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "mgmt/message_id.h"

namespace tavro {

// The library's queries about how an adapter is divided. Each is nothing when the library has no
// such entry point, or none for operations, which is looked up first. Whether the library answered
// is not examined: the numbers start at 0, the text is empty. `LastStatus` stays as it is.

// The partition state (1, 2 or 3) of the port with this MAC or WWN.
std::optional<std::uint32_t> GetPartitionState(const std::string& portIdentifier);

// The type text, such as "CNA", of the adapter that owns this MAC.
std::optional<std::string> GetAdapterType(const std::string& mac);

// The number of ports of the adapter that owns this MAC.
std::optional<std::uint32_t> GetAdapterPortNumber(const std::string& mac);

// The notice that tells why the port's boot configuration cannot be changed in its partition state;
// nothing when it can. A state that cannot be asked for counts as 0; whether there are operations
// does not matter.
std::optional<MessageId> BootChangeRefusal(const std::string& portIdentifier);

}  // namespace tavro
