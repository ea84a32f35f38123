#pragma once

#include <string>

#include "tavroapi/dcb_records.h"

namespace tavro {

// `-fcoe <portWWN> -getdcbinfo`: shows what an FCoE port and its peer agreed on in data center
// bridging.
void ShowDcbInfo(const std::string& wwn);

// `-fcoe <portWWN> -getdcbconfig`: shows how data center bridging is configured on an FCoE port.
void ShowDcbConfig(const std::string& wwn);

// Reads that configuration into `config` and shows it; false when it cannot be read, which is
// reported then.
bool ReadAndShowDcbConfig(const std::string& wwn, tavroapi::DcbConfig& config);

}  // namespace tavro
