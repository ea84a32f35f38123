#pragma once

#include <string>

namespace tavro {

// `-fcoe <portWWN> -portinfo`: shows what the library tells of an FCoE function. `LastStatus` stays
// as it is.
void ShowFcoePortInfo(const std::string& wwn);

// `-fcoe <portWWN> -portstat`: shows the counters of an FCoE function.
void ShowFcoeStatistics(const std::string& wwn);

// `-fcoe <portWWN> -resetstat`: sets the counters of an FCoE function back.
void ResetFcoeStatistics(const std::string& wwn);

}  // namespace tavro
