// The virtual ports of an FCoE function, and the targets and LUNs that one of them sees. A request
// for several ports is served whole or not at all.
#include <algorithm>
#include <charconv>
#include <list>
#include <set>
#include <string>

#include "simulator/host/numerals.h"
#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::VirtualPortQuery;
using tavroapi::VirtualPortRequest;

template <class AnyPart>
auto FindVirtualPort(AnyPart& part, const std::string& portWwn) {
    const std::string wanted = NormalIdentifier(portWwn);
    return std::find_if(part.virtualPorts.begin(), part.virtualPorts.end(),
                        [&](const VirtualPort& port) {
                            return !wanted.empty() && NormalIdentifier(port.portWwn) == wanted;
                        });
}

bool IsInUse(const Host& host, const std::string& portWwn) {
    if (FindFunctionWith<FcoePart>(host, portWwn)) {
        return true;
    }
    for (const Adapter& adapter : host.adapters) {
        for (const Port& port : adapter.ports) {
            for (const Function& function : port.functions) {
                if (function.fcoe &&
                    FindVirtualPort(*function.fcoe, portWwn) != function.fcoe->virtualPorts.end()) {
                    return true;
                }
            }
        }
    }
    return false;
}

// The fabric gives a virtual port the first address after the function's that is not taken; empty
// when all are.
std::string FreeFcid(const FcoePart& part, const std::set<std::string>& taken) {
    constexpr std::uint32_t AddressesPerFunction = 255;
    constexpr std::uint32_t HighestFcid = 0xFFFFFF;
    std::uint32_t own = 0;
    std::from_chars(part.fcid.data(), part.fcid.data() + part.fcid.size(), own, 16);
    for (std::uint32_t next = own + 1; next <= std::min(own + AddressesPerFunction, HighestFcid);
         ++next) {
        std::string fcid = HexOf(next, part.fcid.size());
        if (!taken.contains(fcid)) {
            return fcid;
        }
    }
    return {};
}

Outcome UnknownVirtualPort(const std::string& portWwn) {
    return Refused(Status::UnknownVirtualPort, L"The port does not have this virtual port.",
                   L"Run the command with \"-getvirtualportinfo\" to see the virtual ports.",
                   L"port WWN " + Quoted(portWwn));
}

Outcome ListVirtualPorts(const Viewed<FcoePart>& at,
                         std::list<tavroapi::VirtualPortRecord>& records) {
    const FcoePart& part = at.part;
    const FcoeFabric& fabric = at.host.fcoeFabric;
    records.clear();
    for (const VirtualPort& port : part.virtualPorts) {
        records.push_back({.libraryText1 = {},
                           .portWwn = port.portWwn,
                           .nodeWwn = port.nodeWwn,
                           .parentWwpn = part.portWwn,
                           .libraryText5 = {},
                           .fpmaMac = FabricMac(fabric, port.fcid),
                           .fabricName = fabric.name,
                           .fcfMac = fabric.fcfMac,
                           .fcfNodeWwn = fabric.fcfNodeWwn,
                           .fcfPortWwn = fabric.fcfPortWwn,
                           .fcid = port.fcid,
                           .fcMap = fabric.fcMap,
                           .fabricVlan = part.fipVlanId,
                           .fabricPriority = fabric.priority});
    }
    return Done();
}

Outcome CreateVirtualPorts(const Edited<FcoePart>& at,
                           const std::list<VirtualPortRequest>& wanted) {
    FcoePart& part = at.part;
    std::set<std::string> taken = FcidsInUse(at.host);
    for (const VirtualPortRequest& each : wanted) {
        if (NormalIdentifier(each.portWwn).size() != WwnDigits) {
            return Refused(Status::InvalidWwn, L"The WWN is not valid.",
                           L"Give 16 hexadecimal digits, such as 20:01:02:00:5E:10:00:04.",
                           L"port WWN " + Quoted(each.portWwn));
        }
        if (IsInUse(at.host, each.portWwn)) {
            return Refused(Status::WwnInUse, L"The WWN is in use on this host.",
                           L"Choose another WWN.", L"port WWN " + Quoted(each.portWwn));
        }
        const std::string fcid = FreeFcid(part, taken);
        if (fcid.empty()) {
            return Refused(Status::NoFcidLeft,
                           L"The fabric has no address left for another virtual port.",
                           L"Remove superfluous virtual ports.");
        }
        part.virtualPorts.push_back({each.portWwn, part.nodeWwn, fcid});
        taken.insert(fcid);
    }
    return Done();
}

Outcome DeleteVirtualPorts(const Edited<FcoePart>& at,
                           const std::list<VirtualPortRequest>& unwanted) {
    FcoePart& part = at.part;
    for (const VirtualPortRequest& each : unwanted) {
        const auto found = FindVirtualPort(part, each.portWwn);
        if (found == part.virtualPorts.end()) {
            return UnknownVirtualPort(each.portWwn);
        }
        part.virtualPorts.erase(found);
    }
    return Done();
}

// Refuses a query for no virtual port of the function.
Outcome CheckQuery(const Viewed<FcoePart>& at, const VirtualPortQuery& query) {
    if (FindVirtualPort(at.part, query.portWwn) == at.part.virtualPorts.end()) {
        return UnknownVirtualPort(query.portWwn);
    }
    return Done();
}

Outcome ListVirtualPortTargets(const Viewed<FcoePart>& at, const VirtualPortQuery& query,
                               std::list<tavroapi::VirtualPortTargetRecord>& records) {
    if (Outcome checked = CheckQuery(at, query); !checked.IsDone()) {
        return checked;
    }
    records.clear();
    for (const SeenTarget& seen : TargetsSeenBy(at.host.fcoeFabric, query.portWwn, {})) {
        auto& record = records.emplace_back();
        record.fcid = seen.target->fcid;
        record.portName = seen.target->portWwn;
        record.nodeName = seen.target->nodeWwn;
        record.scsiBus = std::to_string(seen.bus);
        record.scsiTarget = std::to_string(seen.number);
    }
    return Done();
}

Outcome ListVirtualPortLuns(const Viewed<FcoePart>& at, const VirtualPortQuery& query,
                            std::list<tavroapi::VirtualPortLunRecord>& records) {
    if (Outcome checked = CheckQuery(at, query); !checked.IsDone()) {
        return checked;
    }
    records.clear();
    for (const SeenTarget& seen : TargetsSeenBy(at.host.fcoeFabric, query.portWwn, {})) {
        for (const FabricLun& lun : seen.target->luns) {
            records.push_back({.volumes = lun.volumes,
                               .vendorId = lun.vendor,
                               .productId = lun.product,
                               .productRevision = lun.revision,
                               .capacity = lun.capacity,
                               .libraryTexts6To7 = {},
                               .status = lun.status,
                               .scsiUnit = std::to_string(lun.number),
                               .deviceName = lun.deviceName,
                               .deviceType = lun.deviceType,
                               .targetPortWwn = seen.target->portWwn});
        }
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> VirtualPortOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ListVirtualPorts, FcoePart, ListVirtualPorts>(),
        Changes<OperationCode::CreateVirtualPorts, FcoePart, CreateVirtualPorts>(),
        Changes<OperationCode::DeleteVirtualPorts, FcoePart, DeleteVirtualPorts>(),
        Reads<OperationCode::ListVirtualPortTargets, FcoePart, ListVirtualPortTargets>(),
        Reads<OperationCode::ListVirtualPortLuns, FcoePart, ListVirtualPortLuns>(),
    };
    return Rows;
}

}  // namespace tavrosim
