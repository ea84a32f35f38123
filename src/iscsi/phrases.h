// What the iSCSI commands say alike.
#pragma once

#include "mgmt/message_id.h"

namespace tavro {

// Asks for patience before the library works, and leaves a line empty.
void ShowPleaseWait();

}  // namespace tavro
