#include <set>

#include "library/json/place.h"
#include "simulator/host/fcoe_check.h"
#include "simulator/host/host_file.h"
#include "simulator/host/identifier_check.h"
#include "simulator/host/lookup.h"

namespace tavrosim {
namespace {

void CheckFunction(const Function& function, std::set<std::string>& identifiers,
                   const Place& place) {
    const int kinds = int{function.ethernet.has_value()} + int{function.iscsi.has_value()} +
                      int{function.fcoe.has_value()};
    if (kinds != 1) {
        throw ShapeError(place, "exactly one of \"ethernet\", \"iscsi\" and \"fcoe\" is wanted");
    }
    CheckMac(function.mac, Place(place, "mac"));
    if (!identifiers.insert(NormalIdentifier(function.mac)).second) {
        throw ShapeError(Place(place, "mac"), "another function has this MAC");
    }
    if (function.fcoe) {
        CheckFcoePart(*function.fcoe, identifiers, Place(place, "fcoe"));
    }
}

}  // namespace

void CheckHost(const Host& host) {
    const Place root;
    const Place adapters(root, "adapters");
    std::set<std::string> names;
    std::set<std::string> identifiers;
    for (std::size_t a = 0; a < host.adapters.size(); ++a) {
        const Adapter& adapter = host.adapters[a];
        const Place adapterPlace(adapters, a);
        if (!names.insert(adapter.name).second) {
            throw ShapeError(Place(adapterPlace, "name"), "another adapter has this name");
        }
        const Place ports(adapterPlace, "ports");
        for (std::size_t p = 0; p < adapter.ports.size(); ++p) {
            const Place port(ports, p);
            const Place functions(port, "functions");
            for (std::size_t f = 0; f < adapter.ports[p].functions.size(); ++f) {
                CheckFunction(adapter.ports[p].functions[f], identifiers, Place(functions, f));
            }
        }
    }
    CheckFabric(host.fcoeFabric, Place(root, "fcoeFabric"));
}

}  // namespace tavrosim
