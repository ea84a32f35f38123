#include <cstdint>
#include <set>
#include <string>
#include <tuple>

#include "simulator/host/identifier_check.h"
#include "simulator/host/lookup.h"
#include "simulator/host/numerals.h"
#include "twin/check/contradictions.h"
#include "twin/check/walk.h"

namespace tavrohost {
namespace {

using tavrosim::FabricTarget;
using tavrosim::FcoePart;
using tavrosim::VirtualPort;

// The addresses in the fabric, which are given once each.
class Fcids {
  public:
    explicit Fcids(Findings& findings) : known_("this FCID is given twice", findings) {}

    void Meet(const std::string& fcid, const Place& place) {
        const std::string capitals = tavrosim::Capitals(fcid);
        if (capitals != NotLoggedIn && capitals != Untold) {
            known_.Meet(capitals, place);
        }
    }

  private:
    static constexpr const char* NotLoggedIn = "000000";
    static constexpr const char* Untold = "010000";  // what the file need not say
    OnceEach<std::string> known_;
};

void CheckPart(const FcoePart& part, const Place& place, Fcids& fcids, Findings& findings) {
    fcids.Meet(part.fcid, Place(place, "fcid"));
    ForEachAt(part.virtualPorts, Place(place, "virtualPorts"),
              [&](const VirtualPort& port, const Place& at) {
                  fcids.Meet(port.fcid, Place(at, "fcid"));
              });
    using BusPlace = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;
    OnceEach<BusPlace> places("another binding has this bus, target and LUN", findings);
    ForEachAt(part.bindings, Place(place, "bindings"), [&](const auto& binding, const Place& at) {
        places.Meet({binding.bus, binding.target, binding.lun}, at);
    });
}

void CheckForwarder(const tavrosim::FcoeFabric& fabric, const Place& place, Findings& findings) {
    const auto check = [&](const char* key, const std::string& text, auto want) {
        if (!text.empty()) {
            findings.Pass([&] { want(text, Place(place, key)); });
        }
    };
    check("name", fabric.name, tavrosim::CheckWwn);
    check("fcfMac", fabric.fcfMac, tavrosim::CheckMac);
    check("fcfNodeWwn", fabric.fcfNodeWwn, tavrosim::CheckWwn);
    check("fcfPortWwn", fabric.fcfPortWwn, tavrosim::CheckWwn);
}

std::set<std::string> PortWwnsOf(const tavrosim::Host& host) {
    std::set<std::string> wwns;
    ForEachFunction(host, Place(), [&](const tavrosim::Function& function, const Place&) {
        if (function.fcoe) {
            wwns.insert(tavrosim::NormalIdentifier(function.fcoe->portWwn));
            for (const VirtualPort& port : function.fcoe->virtualPorts) {
                wwns.insert(tavrosim::NormalIdentifier(port.portWwn));
            }
        }
    });
    wwns.erase("");
    return wwns;
}

}  // namespace

void CheckFcoe(const tavrosim::Host& host, const Place& place, Findings& findings) {
    Fcids fcids(findings);
    ForEachFunction(host, place, [&](const tavrosim::Function& function, const Place& at) {
        if (function.fcoe) {
            CheckPart(*function.fcoe, Place(at, "fcoe"), fcids, findings);
        }
    });
    const Place fabric(place, "fcoeFabric");
    CheckForwarder(host.fcoeFabric, fabric, findings);
    const std::set<std::string> wwns = PortWwnsOf(host);
    ForEachAt(
        host.fcoeFabric.targets, Place(fabric, "targets"),
        [&](const FabricTarget& target, const Place& at) {
            fcids.Meet(target.fcid, Place(at, "fcid"));
            if (wwns.contains(tavrosim::NormalIdentifier(target.portWwn))) {
                findings.Add(Place(at, "portWwn"), "a port of the host has this WWN");
            }
            OnceEach<std::uint32_t> luns("another LUN of the target has this number", findings);
            ForEachAt(target.luns, Place(at, "luns"), [&](const auto& lun, const Place& lunAt) {
                luns.Meet(lun.number, Place(lunAt, "number"));
            });
        });
}

}  // namespace tavrohost
