#pragma once

#include <string>

namespace tavro {

// `-ethernet <MAC> -portinfo`: shows what the library tells about an Ethernet port. Without the
// library's entry point nothing is shown.
void ShowEthernetPortInfo(const std::string& mac);

}  // namespace tavro
