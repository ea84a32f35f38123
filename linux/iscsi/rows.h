#pragma once

#include <list>
#include <string>

#include "linux/serve/operation.h"
#include "tavroapi/iscsi_storage_records.h"

// What the rows of this room call, besides the functions of their own file.
namespace tavrolinux {

Outcome ListPortals(const Place& at, std::list<tavroapi::PortalEntry>& portals);
Outcome AddPortal(const Place& at, const tavroapi::PortalRecord& record);
Outcome RemovePortal(const Place& at, const tavroapi::PortalRecord& record);

Outcome ListTargets(const Place& at, std::list<tavroapi::TargetRecord>& targets);
Outcome ListActiveTargets(const Place& at, std::list<tavroapi::TargetRecord>& targets);
Outcome ReadTarget(const Place& at, const std::string& name, tavroapi::TargetRecord& record);
Outcome LogInToTarget(const Place& at, const tavroapi::TargetLoginRecord& record);
Outcome RemoveTarget(const Place& at, const std::string& name);

Outcome ListLuns(const Place& at, const std::string& name, std::list<tavroapi::LunRecord>& luns);

Outcome PingFromIscsiPort(const Place& at, const tavroapi::IscsiPingRequest& ping,
                          tavroapi::IscsiPingResult& result);

}  // namespace tavrolinux
