#pragma once

#include <string>

#include "mgmt/message_id.h"
#include "tavroapi/boot_records.h"

namespace tavro {

// Shows the title of one section of the boot configuration.
void ShowSectionTitle(MessageId title);

// Asks for a whole boot configuration of the port; `config`, empty at first, receives the answers.
// The port's address is looked up in the host's inventory when boot is to be bound to it. Wrong
// answers are asked again without limit. The secrets are the caller's to wipe.
void AskIscsiBoot(const std::string& mac, tavroapi::IscsiBootConfig& config);

}  // namespace tavro
