// The targets that an FCoE function sees, its persistent bindings, and the targets' LUNs.
#include <algorithm>
#include <list>

#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;

constexpr const char* TargetRole = "FCP Target";
constexpr const char* TargetState = "Online";
constexpr const char* ClassOfService = "Class 3";
constexpr const char* TargetTypes = "FCP";

Outcome ListTargets(const Host& host, const std::string& request,
                    std::list<tavroapi::FcoeTargetRecord>& records) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const FcoePart& part = function.Part();
    records.clear();
    for (const SeenTarget& seen : TargetsSeenBy(host.fcoeFabric, part.portWwn, part.bindings)) {
        const FabricTarget& target = *seen.target;
        records.emplace_back().texts = {target.symbolicName,
                                        target.fcid,
                                        target.portWwn,
                                        target.nodeWwn,
                                        TargetRole,
                                        TargetState,
                                        ClassOfService,
                                        TargetTypes,
                                        "",
                                        std::to_string(seen.bus),
                                        std::to_string(seen.number)};
    }
    return Done();
}

Outcome ReadTarget(const Host& host, const std::string& request, const std::string& name,
                   tavroapi::FcoeTargetInfoRecord& record) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const FabricTarget* target = FindSeenTarget(host.fcoeFabric, function.Part(), name);
    if (target == nullptr) {
        return UnknownFcoeTarget(name);
    }
    record.texts = {target->symbolicName, target->portWwn, target->nodeWwn, target->fcid,
                    TargetState,          ClassOfService,  TargetTypes};
    return Done();
}

// The name under which the operating system knows a LUN of the target; empty when it knows none.
std::string DeviceNameOf(const FabricTarget& target, std::uint32_t lun) {
    const auto found =
        std::find_if(target.luns.begin(), target.luns.end(),
                     [&](const FabricLun& candidate) { return candidate.number == lun; });
    return found == target.luns.end() ? std::string() : found->deviceName;
}

// A binding outlives its target: what only the fabric knows is empty then.
Outcome ListBindings(const Host& host, const std::string& request,
                     std::list<tavroapi::FcoeBindingRecord>& records) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    records.clear();
    for (const FcoeBinding& binding : function.Part().bindings) {
        const FabricTarget* target = FindFabricTarget(host.fcoeFabric, binding.targetPortWwn);
        records.emplace_back().texts = {
            binding.type,
            target == nullptr ? std::string() : DeviceNameOf(*target, binding.lun),
            std::to_string(binding.bus),
            std::to_string(binding.target),
            std::to_string(binding.lun),
            binding.targetPortWwn,
            target == nullptr ? std::string() : target->nodeWwn,
            target == nullptr ? std::string() : target->fcid};
    }
    return Done();
}

Outcome ListLuns(const Host& host, const std::string& request, const std::string& name,
                 std::list<tavroapi::FcoeLunRecord>& records) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const FabricTarget* target = FindSeenTarget(host.fcoeFabric, function.Part(), name);
    if (target == nullptr) {
        return UnknownFcoeTarget(name);
    }
    records.clear();
    for (const FabricLun& lun : target->luns) {
        const std::string number = std::to_string(lun.number);
        records.emplace_back().texts = {number,       lun.vendor,     lun.product,   lun.revision,
                                        lun.capacity, lun.blockSize,  lun.volumes,   lun.status,
                                        number,       lun.deviceName, lun.deviceType};
    }
    return Done();
}

constexpr OperationModel Rows[] = {
    Reads<OperationCode::ListFcoeTargets, ListTargets>(),
    Reads<OperationCode::ReadFcoeTarget, ReadTarget>(),
    Reads<OperationCode::ListFcoeBindings, ListBindings>(),
    Reads<OperationCode::ListFcoeLuns, ListLuns>(),
};

}  // namespace

std::span<const OperationModel> FcoeTargetOperations() {
    return Rows;
}

}  // namespace tavrosim
