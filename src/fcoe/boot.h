#pragma once

#include <string>

// `-fcoe <portWWN> -getbootconfig` and `-setbootconfig`: how a port boots from FCoE targets.
namespace tavro {

// Shows the boot configuration of a port.
void ShowFcoeBoot(const std::string& wwn);

// Shows the boot configuration, asks for changes and writes it. A port whose partition state does
// not allow changes is refused.
void SetFcoeBoot(const std::string& wwn);

}  // namespace tavro
