// The commands that show what an iSCSI port tells of itself: `-iscsi <MAC> -portinfo`, `-portstat`
// and `-defparam`.
#pragma once

#include <string>

namespace tavro {

// Shows the port's information.
void ShowIscsiPort(const std::string& mac);

// Shows the port's statistics. Says so when the port's driver does not keep any, or cannot be told.
void ShowIscsiStatistics(const std::string& mac);

// Shows the port's default iSCSI parameters.
void ShowIscsiDefaults(const std::string& mac);

}  // namespace tavro
