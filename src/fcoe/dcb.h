#pragma once

#include <string>

#include "tavroapi/dcb_records.h"

namespace tavro {

// Reads into `config` how data center bridging is configured on an FCoE port, and shows it; false
// when it cannot be read, which is reported then.
bool ReadAndShowDcbConfig(const std::string& wwn, tavroapi::DcbConfig& config);

}  // namespace tavro
