// The targets that an FCoE function sees, its persistent bindings, and the targets' LUNs.
#include <algorithm>
#include <list>

#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
namespace fcoe_target = tavroapi::fcoe_target;
namespace fcoe_target_info = tavroapi::fcoe_target_info;
namespace fcoe_binding = tavroapi::fcoe_binding;
namespace fcoe_lun = tavroapi::fcoe_lun;

constexpr const char* TargetRole = "FCP Target";
constexpr const char* TargetState = "Online";
constexpr const char* TargetTypes = "FCP";

Outcome ListFcoeTargets(const Viewed<FcoePart>& at,
                        std::list<tavroapi::FcoeTargetRecord>& records) {
    const FcoePart& part = at.part;
    records.clear();
    for (const SeenTarget& seen : TargetsSeenBy(at.host.fcoeFabric, part.portWwn, part.bindings)) {
        const FabricTarget& target = *seen.target;
        auto& texts = records.emplace_back().texts;
        texts[fcoe_target::SymbolicName] = target.symbolicName;
        texts[fcoe_target::Fcid] = target.fcid;
        texts[fcoe_target::PortWwn] = target.portWwn;
        texts[fcoe_target::NodeWwn] = target.nodeWwn;
        texts[fcoe_target::Role] = TargetRole;
        texts[fcoe_target::State] = TargetState;
        texts[fcoe_target::SupportedClasses] = ClassOfService;
        texts[fcoe_target::SupportedTypes] = TargetTypes;
        texts[fcoe_target::ScsiBus] = std::to_string(seen.bus);
        texts[fcoe_target::ScsiTarget] = std::to_string(seen.number);
    }
    return Done();
}

Outcome ReadFcoeTarget(const Viewed<FcoePart>& at, const std::string& name,
                       tavroapi::FcoeTargetInfoRecord& record) {
    const FabricTarget* target = FindSeenTarget(at.host.fcoeFabric, at.part, name);
    if (target == nullptr) {
        return UnknownFcoeTarget(name);
    }
    record.texts[fcoe_target_info::SymbolicName] = target->symbolicName;
    record.texts[fcoe_target_info::PortWwn] = target->portWwn;
    record.texts[fcoe_target_info::NodeWwn] = target->nodeWwn;
    record.texts[fcoe_target_info::Fcid] = target->fcid;
    record.texts[fcoe_target_info::State] = TargetState;
    record.texts[fcoe_target_info::SupportedClasses] = ClassOfService;
    record.texts[fcoe_target_info::SupportedTypes] = TargetTypes;
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
Outcome ListBindings(const Viewed<FcoePart>& at, std::list<tavroapi::FcoeBindingRecord>& records) {
    records.clear();
    for (const FcoeBinding& binding : at.part.bindings) {
        const FabricTarget* target = FindFabricTarget(at.host.fcoeFabric, binding.targetPortWwn);
        auto& texts = records.emplace_back().texts;
        texts[fcoe_binding::Type] = binding.type;
        texts[fcoe_binding::ScsiBus] = std::to_string(binding.bus);
        texts[fcoe_binding::ScsiTarget] = std::to_string(binding.target);
        texts[fcoe_binding::Lun] = std::to_string(binding.lun);
        texts[fcoe_binding::PortWwn] = binding.targetPortWwn;
        if (target != nullptr) {
            texts[fcoe_binding::DeviceName] = DeviceNameOf(*target, binding.lun);
            texts[fcoe_binding::NodeWwn] = target->nodeWwn;
            texts[fcoe_binding::Fcid] = target->fcid;
        }
    }
    return Done();
}

Outcome ListFcoeLuns(const Viewed<FcoePart>& at, const std::string& name,
                     std::list<tavroapi::FcoeLunRecord>& records) {
    const FabricTarget* target = FindSeenTarget(at.host.fcoeFabric, at.part, name);
    if (target == nullptr) {
        return UnknownFcoeTarget(name);
    }
    records.clear();
    for (const FabricLun& lun : target->luns) {
        const std::string number = std::to_string(lun.number);
        auto& texts = records.emplace_back().texts;
        texts[fcoe_lun::Item] = number;
        texts[fcoe_lun::Vendor] = lun.vendor;
        texts[fcoe_lun::Product] = lun.product;
        texts[fcoe_lun::Revision] = lun.revision;
        texts[fcoe_lun::Capacity] = lun.capacity;
        texts[fcoe_lun::BlockSize] = lun.blockSize;
        texts[fcoe_lun::Volumes] = lun.volumes;
        texts[fcoe_lun::ConnectionState] = lun.status;
        texts[fcoe_lun::ScsiUnit] = number;
        texts[fcoe_lun::DeviceName] = lun.deviceName;
        texts[fcoe_lun::DeviceType] = lun.deviceType;
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> FcoeTargetOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ListFcoeTargets, FcoePart, ListFcoeTargets>(),
        Reads<OperationCode::ReadFcoeTarget, FcoePart, ReadFcoeTarget>(),
        Reads<OperationCode::ListFcoeBindings, FcoePart, ListBindings>(),
        Reads<OperationCode::ListFcoeLuns, FcoePart, ListFcoeLuns>(),
    };
    return Rows;
}

}  // namespace tavrosim
