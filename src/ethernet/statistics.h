#pragma once

#include <string>

namespace tavro {

// `-ethernet <MAC> -portstat`: shows the counters of an Ethernet port in four sections. Without the
// library's entry point nothing is shown.
void ShowEthernetPortStatistics(const std::string& mac);

// `-ethernet <MAC> -resetstat`: resets the counters of an Ethernet port, then reads and shows them.
void ResetEthernetPortStatistics(const std::string& mac);

}  // namespace tavro
