#include "simulator/host/lookup.h"

#include "simulator/host/numerals.h"

namespace tavrosim {

const std::string& KeyOf(const Function& function) {
    return function.fcoe ? function.fcoe->portWwn : function.mac;
}

std::set<std::string> FcidsInUse(const Host& host) {
    std::set<std::string> taken;
    for (const FabricTarget& target : host.fcoeFabric.targets) {
        taken.insert(Capitals(target.fcid));
    }
    for (const Adapter& adapter : host.adapters) {
        for (const Port& port : adapter.ports) {
            for (const Function& function : port.functions) {
                if (function.fcoe) {
                    taken.insert(Capitals(function.fcoe->fcid));
                    for (const VirtualPort& virtualPort : function.fcoe->virtualPorts) {
                        taken.insert(Capitals(virtualPort.fcid));
                    }
                }
            }
        }
    }
    return taken;
}

}  // namespace tavrosim
