#include <algorithm>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "library/json/place.h"
#include "simulator/host/fcoe_check.h"
#include "simulator/host/host_file.h"
#include "simulator/host/identifier_check.h"
#include "simulator/host/lookup.h"

namespace tavrosim {
namespace {

// The identifiers of the functions of one kind so far, in normal form.
struct Kind {
    const char* name = nullptr;
    std::set<std::string> identifiers;
};

struct Kinds {
    Kind ethernet{"Ethernet", {}};
    Kind iscsi{"iSCSI", {}};
    Kind fcoe{"FCoE", {}};

    Kind& Of(const Function& function) {
        return function.ethernet ? ethernet : function.iscsi ? iscsi : fcoe;
    }
};

void CheckFunction(const Function& function, Kinds& kinds, const Place& place, Findings& findings) {
    const int count = int{function.ethernet.has_value()} + int{function.iscsi.has_value()} +
                      int{function.fcoe.has_value()};
    if (count != 1) {
        findings.Add(place, "exactly one of \"ethernet\", \"iscsi\" and \"fcoe\" is wanted");
        return;
    }
    const Place mac(place, "mac");
    Kind& kind = kinds.Of(function);
    if (findings.Pass([&] { CheckMac(function.mac, mac); }) &&
        !kind.identifiers.insert(NormalIdentifier(function.mac)).second) {
        findings.Add(mac, "another " + std::string(kind.name) + " function has this MAC");
    }
    if (function.fcoe) {
        CheckFcoePart(*function.fcoe, kind.identifiers, Place(place, "fcoe"), findings);
    }
}

void CheckName(const std::string& name, std::initializer_list<std::string_view> names,
               const Place& place, Findings& findings) {
    if (std::find(names.begin(), names.end(), name) != names.end()) {
        return;
    }
    std::string list;
    for (const std::string_view each : names) {
        list += (list.empty() ? "\"" : ", \"") + std::string(each) + '"';
    }
    findings.Add(place, "one of " + list + " is wanted");
}

void CheckPartitions(const std::optional<Partitions>& partitions, const Place& place,
                     Findings& findings) {
    if (!partitions) {
        return;
    }
    CheckName(partitions->mode, {SingleFunctionMode, PartitionedMode}, Place(place, "mode"),
              findings);
    const Place functions(place, "functions");
    for (std::size_t f = 0; f < partitions->functions.size(); ++f) {
        const Place function(functions, f);
        CheckName(partitions->functions[f].personality,
                  {EthernetPersonality, IscsiPersonality, FcoePersonality},
                  Place(function, "personality"), findings);
    }
}

void CheckResources(const Resources& resources, const Place& place, Findings& findings) {
    CheckName(resources.personality, {IscsiPersonality, FcoePersonality},
              Place(place, "personality"), findings);
    if (resources.pendingPersonality) {
        CheckName(*resources.pendingPersonality, {IscsiPersonality, FcoePersonality},
                  Place(place, "pendingPersonality"), findings);
    }
}

}  // namespace

void CheckHost(const Host& host, const Place& root) {
    Findings first;
    CheckHost(host, root, first);
}

void CheckHost(const Host& host, const Place& root, Findings& findings) {
    const Place adapters(root, "adapters");
    std::set<std::string> names;
    Kinds kinds;
    for (std::size_t a = 0; a < host.adapters.size(); ++a) {
        const Adapter& adapter = host.adapters[a];
        const Place adapterPlace(adapters, a);
        if (!names.insert(adapter.name).second) {
            findings.Add(Place(adapterPlace, "name"), "another adapter has this name");
        }
        CheckPartitions(adapter.partitions, Place(adapterPlace, "partitions"), findings);
        CheckPartitions(adapter.pendingPartitions, Place(adapterPlace, "pendingPartitions"),
                        findings);
        if (adapter.pendingPartitions && adapter.partitionState == tavroapi::PartitionedForGood) {
            findings.Add(Place(adapterPlace, "pendingPartitions"),
                         "the partitions of this adapter are fixed");
        }
        const Place ports(adapterPlace, "ports");
        for (std::size_t p = 0; p < adapter.ports.size(); ++p) {
            const Place port(ports, p);
            if (adapter.ports[p].resources) {
                CheckResources(*adapter.ports[p].resources, Place(port, "resources"), findings);
            }
            const Place functions(port, "functions");
            for (std::size_t f = 0; f < adapter.ports[p].functions.size(); ++f) {
                CheckFunction(adapter.ports[p].functions[f], kinds, Place(functions, f), findings);
            }
        }
    }
    CheckFabric(host.fcoeFabric, Place(root, "fcoeFabric"), findings);
}

}  // namespace tavrosim
