#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "twin/check/contradictions.h"
#include "twin/check/walk.h"

namespace tavrohost {
namespace {

using tavrosim::IscsiBoot;
using tavrosim::IscsiBootTarget;
using tavrosim::IscsiPortal;
using tavrosim::IscsiSession;
using tavrosim::IscsiStorage;
using tavrosim::KnownTarget;
using tavrosim::NetworkTarget;
using PortalKey = std::pair<std::string, std::string>;

PortalKey KeyOf(const IscsiPortal& portal) {
    return {portal.address, portal.port};
}

template <class Portals>
void CheckPortals(const Portals& portals, const char* finding, const Place& place,
                  Findings& findings) {
    OnceEach<PortalKey> known(finding, findings);
    ForEachAt(portals, Place(place, "portals"),
              [&](const IscsiPortal& portal, const Place& at) { known.Meet(KeyOf(portal), at); });
}

void CheckSessions(const IscsiStorage& storage, const Place& place, Findings& findings) {
    const bool areTargetsKnown = findings.IsReadable(Place(place, "targets"));
    std::set<std::string> targets;
    for (const KnownTarget& target : storage.targets) {
        targets.insert(target.name);
    }
    OnceEach<std::uint32_t> numbers("another session of the function has this number", findings);
    ForEachAt(storage.sessions, Place(place, "sessions"),
              [&](const IscsiSession& session, const Place& at) {
                  if (session.id == 0) {
                      findings.Add(Place(at, "id"), "sessions are numbered from 1");
                  }
                  numbers.Meet(session.id, Place(at, "id"));
                  if (areTargetsKnown && !targets.contains(session.target)) {
                      findings.Add(Place(at, "target"), "the function does not know this target");
                  }
              });
}

void CheckStorage(const IscsiStorage& storage, const Place& place, Findings& findings) {
    CheckPortals(storage.portals, "this portal is known twice", place, findings);
    OnceEach<std::string> targets("this target is known twice", findings);
    ForEachAt(storage.targets, Place(place, "targets"),
              [&](const KnownTarget& target, const Place& at) {
                  targets.Meet(target.name, Place(at, "name"));
              });
    CheckSessions(storage, place, findings);
}

void CheckBoot(const IscsiBoot& boot, const Place& place, Findings& findings) {
    const auto check = [&](const IscsiBootTarget& target, const char* key) {
        if (target.used == "Enabled" && target.name.empty() &&
            findings.IsReadable(Place(place, "parametersByDhcp")) &&
            findings.IsReadable(Place(place, key))) {
            findings.Add(Place(place, key),
                         "a target that is used needs a name unless the settings come from DHCP");
        }
    };
    if (boot.parametersByDhcp != "Enabled") {
        check(boot.firstTarget, "firstTarget");
        check(boot.secondTarget, "secondTarget");
    }
}

void CheckNetworkTarget(const NetworkTarget& target, const Place& place, Findings& findings) {
    CheckPortals(target.portals, "the target answers here already", place, findings);
    OnceEach<std::uint32_t> numbers("another LUN of the target has this number", findings);
    ForEachAt(target.luns, Place(place, "luns"), [&](const auto& lun, const Place& at) {
        numbers.Meet(lun.number, Place(at, "number"));
    });
}

}  // namespace

void CheckIscsiStorage(const tavrosim::Host& host, const Place& place, Findings& findings) {
    ForEachFunction(host, place, [&](const tavrosim::Function& function, const Place& at) {
        if (function.iscsi) {
            const Place part(at, "iscsi");
            CheckStorage(function.iscsi->storage, Place(part, "storage"), findings);
            if (function.iscsi->boot) {
                CheckBoot(*function.iscsi->boot, Place(part, "boot"), findings);
            }
        }
    });
    OnceEach<std::string> names("another target has this name", findings);
    ForEachAt(host.iscsiTargets, Place(place, "iscsiTargets"),
              [&](const NetworkTarget& target, const Place& at) {
                  names.Meet(target.name, Place(at, "name"));
                  CheckNetworkTarget(target, at, findings);
              });
}

}  // namespace tavrohost
