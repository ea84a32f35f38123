#include <map>
#include <utility>

#include "library/text/identifier.h"
#include "simulator/host/lookup.h"
#include "simulator/model/from_records.h"
#include "simulator/model/numbers.h"
#include "twin/capture/function_model.h"
#include "twin/capture/walk.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrolib::IsFcid;
using tavrosim::FabricLun;
using tavrosim::FabricTarget;
using tavrosim::FcoeFabric;
using tavrosim::NormalIdentifier;
namespace fcoe_target = tavroapi::fcoe_target;
namespace fcoe_lun = tavroapi::fcoe_lun;

constexpr const char* UnknownFcid = "000000";

// The targets so far, found by their port WWNs, and the ports that have told which ones they see.
class FabricTargets {
  public:
    // A port begins to tell; what is seen from now on is seen by it.
    void BeginPort(const std::string& portWwn) { ports_.push_back(portWwn); }

    // The target, now seen by the port; null for one that is none, or is told too late.
    FabricTarget* Seen(const std::string& portWwn, const std::string& nodeWwn,
                       const std::string& fcid) {
        FabricTarget* const target = Find(portWwn, nodeWwn, fcid);
        if (target != nullptr &&
            (target->initiators.empty() || target->initiators.back() != ports_.back())) {
            target->initiators.push_back(ports_.back());
        }
        return target;
    }

    // The target that is known already; null when there is none.
    FabricTarget* Known(const std::string& portWwn) {
        const auto found = places_.find(NormalIdentifier(portWwn));
        return found == places_.end() ? nullptr : &targets_[found->second];
    }

    // The targets; those that all ports see name none.
    std::vector<FabricTarget> Take() {
        for (FabricTarget& target : targets_) {
            if (target.initiators.size() == ports_.size()) {
                target.initiators.clear();
            }
        }
        return std::move(targets_);
    }

  private:
    FabricTarget* Find(const std::string& portWwn, const std::string& nodeWwn,
                       const std::string& fcid) {
        if (!IsWwn(portWwn)) {
            return nullptr;
        }
        if (FabricTarget* const known = Known(portWwn)) {
            return known;
        }
        if (targets_.size() == MostTargets) {
            return nullptr;
        }
        places_.emplace(NormalIdentifier(portWwn), targets_.size());
        FabricTarget& target = targets_.emplace_back();
        target.portWwn = portWwn;
        target.nodeWwn = IsWwn(nodeWwn) ? nodeWwn : portWwn;
        target.fcid = IsFcid(fcid) ? fcid : UnknownFcid;
        return &target;
    }

    std::vector<std::string> ports_;
    std::vector<FabricTarget> targets_;
    std::map<std::string, std::size_t> places_;
};

FabricLun LunFrom(const tavroapi::FcoeLunRecord& record, std::uint32_t number) {
    return {number,
            record.texts[fcoe_lun::Vendor],
            record.texts[fcoe_lun::Product],
            record.texts[fcoe_lun::Revision],
            record.texts[fcoe_lun::Capacity],
            record.texts[fcoe_lun::BlockSize],
            record.texts[fcoe_lun::DeviceType],
            record.texts[fcoe_lun::DeviceName],
            record.texts[fcoe_lun::ConnectionState],
            record.texts[fcoe_lun::Volumes]};
}

// What a virtual port tells of a logical unit; the block size is told to physical ports only.
FabricLun LunFrom(const tavroapi::VirtualPortLunRecord& record, std::uint32_t number) {
    FabricLun lun;
    lun.number = number;
    lun.vendor = record.vendorId;
    lun.product = record.productId;
    lun.revision = record.productRevision;
    lun.capacity = record.capacity;
    lun.deviceType = record.deviceType;
    lun.deviceName = record.deviceName;
    lun.status = record.status;
    lun.volumes = record.volumes;
    return lun;
}

std::vector<FabricLun> FabricLunsFrom(const std::list<tavroapi::FcoeLunRecord>& records) {
    std::vector<FabricLun> luns;
    for (const tavroapi::FcoeLunRecord& record : records) {
        const auto unit = tavrosim::WholeNumber<std::uint32_t>(record.texts[fcoe_lun::ScsiUnit]);
        const auto item = tavrosim::WholeNumber<std::uint32_t>(record.texts[fcoe_lun::Item]);
        if (unit || item) {
            luns.push_back(LunFrom(record, unit ? *unit : *item));
        }
    }
    return luns;
}

void TellSeenTargets(const Told& told, const std::string& key, FabricTargets& targets) {
    const auto records = told.By<OperationCode::ListFcoeTargets>(key);
    if (!records) {
        return;
    }
    targets.BeginPort(key);
    for (const tavroapi::FcoeTargetRecord& record : *records) {
        const std::string& portWwn = record.texts[fcoe_target::PortWwn];
        FabricTarget* const target = targets.Seen(portWwn, record.texts[fcoe_target::NodeWwn],
                                                  record.texts[fcoe_target::Fcid]);
        if (target == nullptr) {
            continue;
        }
        if (target->symbolicName.empty()) {
            target->symbolicName = record.texts[fcoe_target::SymbolicName];
        }
        const auto luns = told.By<OperationCode::ListFcoeLuns>(key, portWwn);
        if (luns && target->luns.empty()) {
            target->luns = FabricLunsFrom(*luns);
        }
    }
}

void TellSeenTargets(const Told& told, const std::string& key, const std::string& virtualPort,
                     FabricTargets& targets) {
    const tavroapi::VirtualPortQuery query{.portWwn = virtualPort, .physicalPort = key};
    const auto records = told.By<OperationCode::ListVirtualPortTargets>(key, query);
    if (!records) {
        return;
    }
    targets.BeginPort(virtualPort);
    std::set<std::string> withoutLuns;
    for (const tavroapi::VirtualPortTargetRecord& record : *records) {
        const FabricTarget* const target =
            targets.Seen(record.portName, record.nodeName, record.fcid);
        if (target != nullptr && target->luns.empty()) {
            withoutLuns.insert(NormalIdentifier(record.portName));
        }
    }
    for (const auto& record : told.By<OperationCode::ListVirtualPortLuns>(key, query)
                                  .value_or(std::list<tavroapi::VirtualPortLunRecord>{})) {
        FabricTarget* const target = targets.Known(record.targetPortWwn);
        const auto number = tavrosim::WholeNumber<std::uint32_t>(record.scsiUnit);
        if (target != nullptr && number &&
            withoutLuns.contains(NormalIdentifier(record.targetPortWwn))) {
            target->luns.push_back(LunFrom(record, *number));
        }
    }
}

// What ports tell of the fabric itself: the first one counts.
class FabricTeller {
  public:
    explicit FabricTeller(const Told& told) : told_(told) {}

    void Tell(const std::string& key) {
        TellForwarder(key);
        TellPeer(key);
        TellPriority(key);
    }

    FcoeFabric Take() { return std::move(fabric_); }

  private:
    void TellForwarder(const std::string& key) {
        namespace fcoe_port = tavroapi::fcoe_port;
        const auto port = told_.By<OperationCode::ReadFcoePort>(key);
        if (port && !std::exchange(hasForwarder_, true)) {
            fabric_.name = port->texts[fcoe_port::FabricName];
            fabric_.fcfMac = port->texts[fcoe_port::FcfMac];
            fabric_.fcfNodeWwn = port->texts[fcoe_port::FcfNodeWwn];
            fabric_.fcfPortWwn = port->texts[fcoe_port::FcfPortWwn];
            fabric_.fcMap = port->texts[fcoe_port::FcMap];
        }
    }

    void TellPeer(const std::string& key) {
        const auto info = told_.By<OperationCode::ReadDcbInfo>(key);
        if (info && !std::exchange(hasPeer_, true)) {
            fabric_.dcb = tavrosim::PeerDcbFrom(*info);
        }
    }

    void TellPriority(const std::string& key) {
        const auto ports = told_.By<OperationCode::ListVirtualPorts>(key);
        if (ports && !ports->empty() && !std::exchange(hasPriority_, true)) {
            fabric_.priority = ports->front().fabricPriority;
        }
    }

    const Told& told_;
    FcoeFabric fabric_;
    bool hasForwarder_ = false;
    bool hasPeer_ = false;
    bool hasPriority_ = false;
};

}  // namespace

FcoeFabric FabricFrom(const Told& told, const tavrosim::Host& host) {
    FabricTeller teller(told);
    FabricTargets targets;
    for (const tavrosim::Adapter& adapter : host.adapters) {
        for (const tavrosim::Port& port : adapter.ports) {
            for (const tavrosim::Function& function : port.functions) {
                if (!function.fcoe) {
                    continue;
                }
                const std::string& key = function.fcoe->portWwn;
                teller.Tell(key);
                TellSeenTargets(told, key, targets);
                for (const tavrosim::VirtualPort& virtualPort : function.fcoe->virtualPorts) {
                    TellSeenTargets(told, key, virtualPort.portWwn, targets);
                }
            }
        }
    }
    FcoeFabric fabric = teller.Take();
    fabric.targets = targets.Take();
    return fabric;
}

}  // namespace tavrohost
