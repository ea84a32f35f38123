#pragma once

#include <string>

#include "linux/system/roots.h"

namespace tavrolinux {

// The name of the host's iSCSI initiator, as `/etc/iscsi/initiatorname.iscsi` states it; empty
// where there is no such file, or it states none.
std::string ReadInitiatorName(const Roots& roots);

}  // namespace tavrolinux
