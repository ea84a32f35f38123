#include "simulator/host/fcoe_check.h"

#include "simulator/host/identifier_check.h"
#include "simulator/host/lookup.h"

namespace tavrosim {
namespace {

// The checks of single identifiers, with what they find told to `findings`.
class Identifiers {
  public:
    explicit Identifiers(Findings& findings) : findings_(findings) {}

    bool CheckWwn(const std::string& wwn, const Place& place) {
        return findings_.Pass([&] { tavrosim::CheckWwn(wwn, place); });
    }
    void CheckFcid(const std::string& fcid, const Place& place) {
        findings_.Pass([&] { tavrosim::CheckFcid(fcid, place); });
    }
    void CheckNewWwn(const std::string& wwn, std::set<std::string>& known, const char* owner,
                     const Place& place) {
        if (CheckWwn(wwn, place) && !known.insert(NormalIdentifier(wwn)).second) {
            findings_.Add(place, std::string("another ") + owner + " has this WWN");
        }
    }

  private:
    Findings& findings_;
};

}  // namespace

void CheckFcoePart(const FcoePart& part, std::set<std::string>& identifiers, const Place& place,
                   Findings& findings) {
    Identifiers check(findings);
    check.CheckNewWwn(part.portWwn, identifiers, "function", Place(place, "portWwn"));
    check.CheckWwn(part.nodeWwn, Place(place, "nodeWwn"));
    check.CheckFcid(part.fcid, Place(place, "fcid"));
    const Place bindings(place, "bindings");
    for (std::size_t i = 0; i < part.bindings.size(); ++i) {
        const Place binding(bindings, i);
        check.CheckWwn(part.bindings[i].targetPortWwn, Place(binding, "targetPortWwn"));
    }
    const Place ports(place, "virtualPorts");
    for (std::size_t i = 0; i < part.virtualPorts.size(); ++i) {
        const Place port(ports, i);
        check.CheckNewWwn(part.virtualPorts[i].portWwn, identifiers, "port",
                          Place(port, "portWwn"));
        check.CheckWwn(part.virtualPorts[i].nodeWwn, Place(port, "nodeWwn"));
        check.CheckFcid(part.virtualPorts[i].fcid, Place(port, "fcid"));
    }
}

void CheckFabric(const FcoeFabric& fabric, const Place& place, Findings& findings) {
    Identifiers check(findings);
    constexpr std::uint32_t Everything = 100;
    std::set<std::string> wwns;
    const Place targets(place, "targets");
    for (std::size_t i = 0; i < fabric.targets.size(); ++i) {
        const FabricTarget& target = fabric.targets[i];
        const Place targetPlace(targets, i);
        check.CheckNewWwn(target.portWwn, wwns, "target", Place(targetPlace, "portWwn"));
        check.CheckWwn(target.nodeWwn, Place(targetPlace, "nodeWwn"));
        check.CheckFcid(target.fcid, Place(targetPlace, "fcid"));
        const Place initiators(targetPlace, "initiators");
        for (std::size_t k = 0; k < target.initiators.size(); ++k) {
            check.CheckWwn(target.initiators[k], Place(initiators, k));
        }
        if (target.lossPercent > Everything) {
            findings.Add(Place(targetPlace, "lossPercent"), "at most 100 is wanted");
        }
    }
}

}  // namespace tavrosim
