#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/host/dcb.h"
#include "simulator/host/member.h"

// The Fibre Channel fabric that the host's FCoE functions are attached to.
namespace tavrosim {

struct FabricLun {
    std::uint32_t number = 0;
    std::string vendor;
    std::string product;
    std::string revision = "1.0";
    std::string capacity;
    std::string blockSize = "512";
    std::string deviceType = "Disk";
    std::string deviceName;
    std::string status = "Online";
    std::string volumes;

    static constexpr auto Members(auto visit) {
        return visit(Member{"number", &FabricLun::number, Presence::Required},
                     Member{"vendor", &FabricLun::vendor}, Member{"product", &FabricLun::product},
                     Member{"revision", &FabricLun::revision},
                     Member{"capacity", &FabricLun::capacity},
                     Member{"blockSize", &FabricLun::blockSize},
                     Member{"deviceType", &FabricLun::deviceType},
                     Member{"deviceName", &FabricLun::deviceName},
                     Member{"status", &FabricLun::status}, Member{"volumes", &FabricLun::volumes});
    }
};

struct FabricTarget {
    std::string portWwn;
    std::string nodeWwn;
    std::string fcid;
    std::string symbolicName;
    std::vector<std::string> initiators;  // the port WWNs that see the target; empty for all
    std::uint32_t delayMilliseconds = 1;  // the shortest time that a reply to a ping takes
    std::uint32_t lossPercent = 0;        // of the replies to a ping
    std::vector<FabricLun> luns;

    static constexpr auto Members(auto visit) {
        return visit(Member{"portWwn", &FabricTarget::portWwn, Presence::Required},
                     Member{"nodeWwn", &FabricTarget::nodeWwn, Presence::Required},
                     Member{"fcid", &FabricTarget::fcid, Presence::Required},
                     Member{"symbolicName", &FabricTarget::symbolicName},
                     Member{"initiators", &FabricTarget::initiators},
                     Member{"delayMilliseconds", &FabricTarget::delayMilliseconds},
                     Member{"lossPercent", &FabricTarget::lossPercent},
                     Member{"luns", &FabricTarget::luns});
    }
};

struct FcoeFabric {
    std::string name = "10:00:02:00:5E:FC:00:01";
    std::string fcfMac = "02-00-5E-FC-00-01";
    std::string fcfNodeWwn = "10:00:02:00:5E:FC:00:01";
    std::string fcfPortWwn = "20:01:02:00:5E:FC:00:01";
    std::string fcMap = "0EFC00";
    std::string priority = "128";
    DcbSettings dcb;  // of the forwarder's port
    std::vector<FabricTarget> targets;

    static constexpr auto Members(auto visit) {
        return visit(Member{"name", &FcoeFabric::name}, Member{"fcfMac", &FcoeFabric::fcfMac},
                     Member{"fcfNodeWwn", &FcoeFabric::fcfNodeWwn},
                     Member{"fcfPortWwn", &FcoeFabric::fcfPortWwn},
                     Member{"fcMap", &FcoeFabric::fcMap}, Member{"priority", &FcoeFabric::priority},
                     Member{"dcb", &FcoeFabric::dcb}, Member{"targets", &FcoeFabric::targets});
    }
};

}  // namespace tavrosim
