#pragma once

#include <string>

#include "tavroapi/boot_records.h"

namespace tavro {

// Asks for the boot settings of the port and for as many of its boot targets as the user wants,
// from the first on; `config` receives the answers, what is not asked stays. Wrong answers are
// asked again without limit.
void AskFcoeBoot(const std::string& wwn, tavroapi::FcoeBootConfig& config);

}  // namespace tavro
