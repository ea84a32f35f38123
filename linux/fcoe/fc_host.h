#pragma once

#include <cstdint>
#include <filesystem>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "linux/serve/operation.h"
#include "tavroapi/fcoe_records.h"

// What the operations on FCoE functions share: the Fibre Channel host in sysfs, and its targets.
namespace tavrolinux {

struct FcHost {
    std::filesystem::path attributes;                 // what the class fc_host tells of it
    std::filesystem::path device;                     // its own folder, without links
    std::optional<std::filesystem::path> controller;  // of FCoE, where the kernel has one for it
};

// The host of the function. Throws SystemFailure (ENODEV) when it is gone.
FcHost FcHostOf(const Place& at);

// A target that the host sees.
struct FcTarget {
    std::filesystem::path attributes;  // what the class fc_remote_ports tells of it
    std::uint64_t bus = 0;             // of the operating system's SCSI hosts
    std::uint64_t number = 0;          // of the remote port on that
    std::string portWwn;
};

// The targets of the host, in the order of their numbers. Those that the kernel only remembers are
// none.
std::vector<FcTarget> FcTargetsOf(const Place& at);

Outcome ReadFcoePort(const Place& at, tavroapi::FcoePortRecord& record);
Outcome ReadFcoeStatistics(const Place& at, std::uint32_t number,
                           tavroapi::FcoeStatisticsRecord& record);
Outcome ResetFcoeStatistics(const Place& at, std::uint32_t number,
                            tavroapi::FcoeStatisticsRecord& record);
Outcome ListFcoeTargets(const Place& at, std::list<tavroapi::FcoeTargetRecord>& records);
Outcome ReadFcoeTarget(const Place& at, const std::string& name,
                       tavroapi::FcoeTargetInfoRecord& record);
Outcome ListFcoeLuns(const Place& at, const std::string& name,
                     std::list<tavroapi::FcoeLunRecord>& records);
Outcome ListFcoeBindings(const Place& at, std::list<tavroapi::FcoeBindingRecord>& records);

}  // namespace tavrolinux
