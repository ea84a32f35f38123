#pragma once

#include <optional>
#include <string>

#include "mgmt/message_id.h"

namespace tavro {

// The notice that tells why the port's boot configuration cannot be changed in its partition state;
// nothing when it can. A state that cannot be asked for counts as 0; whether there are operations
// does not matter.
std::optional<MessageId> BootChangeRefusal(const std::string& portIdentifier);

}  // namespace tavro
