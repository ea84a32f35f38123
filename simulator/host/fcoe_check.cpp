#include "simulator/host/fcoe_check.h"

#include "simulator/host/identifier_check.h"
#include "simulator/host/lookup.h"

namespace tavrosim {
namespace {

void CheckNewWwn(const std::string& wwn, std::set<std::string>& identifiers, const char* owner,
                 const Place& place) {
    CheckWwn(wwn, place);
    if (!identifiers.insert(NormalIdentifier(wwn)).second) {
        throw ShapeError(place, std::string("another ") + owner + " has this WWN");
    }
}

}  // namespace

void CheckFcoePart(const FcoePart& part, std::set<std::string>& identifiers, const Place& place) {
    CheckNewWwn(part.portWwn, identifiers, "function", Place(place, "portWwn"));
    CheckWwn(part.nodeWwn, Place(place, "nodeWwn"));
    CheckFcid(part.fcid, Place(place, "fcid"));
    const Place bindings(place, "bindings");
    for (std::size_t i = 0; i < part.bindings.size(); ++i) {
        const Place binding(bindings, i);
        CheckWwn(part.bindings[i].targetPortWwn, Place(binding, "targetPortWwn"));
    }
    const Place ports(place, "virtualPorts");
    for (std::size_t i = 0; i < part.virtualPorts.size(); ++i) {
        const Place port(ports, i);
        CheckNewWwn(part.virtualPorts[i].portWwn, identifiers, "port", Place(port, "portWwn"));
        CheckWwn(part.virtualPorts[i].nodeWwn, Place(port, "nodeWwn"));
        CheckFcid(part.virtualPorts[i].fcid, Place(port, "fcid"));
    }
}

void CheckFabric(const FcoeFabric& fabric, const Place& place) {
    constexpr std::uint32_t Everything = 100;
    std::set<std::string> wwns;
    const Place targets(place, "targets");
    for (std::size_t i = 0; i < fabric.targets.size(); ++i) {
        const FabricTarget& target = fabric.targets[i];
        const Place targetPlace(targets, i);
        CheckNewWwn(target.portWwn, wwns, "target", Place(targetPlace, "portWwn"));
        CheckWwn(target.nodeWwn, Place(targetPlace, "nodeWwn"));
        CheckFcid(target.fcid, Place(targetPlace, "fcid"));
        const Place initiators(targetPlace, "initiators");
        for (std::size_t k = 0; k < target.initiators.size(); ++k) {
            CheckWwn(target.initiators[k], Place(initiators, k));
        }
        if (target.lossPercent > Everything) {
            throw ShapeError(Place(targetPlace, "lossPercent"), "at most 100 is wanted");
        }
    }
}

}  // namespace tavrosim
