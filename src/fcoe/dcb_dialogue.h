#pragma once

#include <string>

namespace tavro {

// `-fcoe <portWWN> -setdcb`: shows how data center bridging is configured on an FCoE port, asks
// what is to change, and applies it. Only for ports of drivers that can be configured.
void ChangeDcbConfig(const std::string& wwn);

}  // namespace tavro
