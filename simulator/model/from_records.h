#pragma once

#include <optional>
#include <string>

#include "simulator/host/boot.h"
#include "simulator/host/dcb.h"
#include "simulator/host/ethernet_settings.h"
#include "simulator/host/ethernet_statistics.h"
#include "simulator/host/fcoe_statistics.h"
#include "simulator/host/iscsi_storage.h"
#include "simulator/host/partition.h"
#include "simulator/host/tcpip.h"
#include "tavroapi/boot_records.h"
#include "tavroapi/dcb_records.h"
#include "tavroapi/ethernet_records.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/partition_records.h"
#include "tavroapi/tcpip_records.h"

// What the records of the contract tell, as the host holds it: the way back from what the model
// tells of a host, whoever filled the records in. Nothing is refused. Texts are taken over as they
// stand; a counter that is no number of 64 bits is 0, and one above 63 bits is the highest of
// those.
namespace tavrosim {

TcpIp TcpIpFrom(const tavroapi::TcpIpSettings& record);
TcpIp TcpIpFrom(const tavroapi::IscsiPortRecord& record);

EthernetCounters EthernetCountersFrom(const tavroapi::EthernetPortStatistics& record);
EthernetSettings EthernetSettingsFrom(const tavroapi::AdapterSettings& record);

IscsiStatistics IscsiStatisticsFrom(const tavroapi::IscsiParameterRecord& record);
FcoeStatistics FcoeStatisticsFrom(const tavroapi::FcoeStatisticsRecord& record);

IscsiBoot IscsiBootFrom(const tavroapi::IscsiBootConfig& config);
FcoeBoot FcoeBootFrom(const tavroapi::FcoeBootConfig& config);

DcbSettings DcbFrom(const tavroapi::DcbConfig& config);
// Of one of the two sides; the map of priorities is not told there and stays as usual.
DcbSettings LocalDcbFrom(const tavroapi::DcbInfo& info);
DcbSettings PeerDcbFrom(const tavroapi::DcbInfo& info);

// Modes, flow controls and personalities may stand as names or as the codes that requests send. A
// mode or personality that is neither stays as usual.
Partitions PartitionsFrom(const tavroapi::PartitionConfig& config);
// "iSCSI" or "FCoE" for its name or code; nothing for anything else.
std::optional<std::string> PortPersonalityFrom(const tavroapi::PersonalitySetting& setting);

}  // namespace tavrosim
