#pragma once

#include "simulator/host/tcpip.h"
#include "tavroapi/tcpip_records.h"

namespace tavrosim {

// What the library tells of the settings that are in force: all but the link-local address.
tavroapi::TcpIpSettings RecordOf(const TcpIp& settings);

}  // namespace tavrosim
