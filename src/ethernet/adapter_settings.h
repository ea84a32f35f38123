#pragma once

#include <string>

namespace tavro {

// `-ethernet <MAC> -getadapinfo`: shows the settings that the adapter of an Ethernet port has.
// Without the library's entry point nothing is shown.
void ShowAdapterSettings(const std::string& mac);

// `-ethernet <MAC> -setadapinfo`: shows the settings that can be changed, lets the user edit one
// after the other, and writes them once confirmed. How the write ends is not reported.
void ChangeAdapterSettings(const std::string& mac);

// `-ethernet <MAC> -getxml`: has the library export the adapter's settings. Never prints anything.
void GetEthernetXml(const std::string& mac);

}  // namespace tavro
