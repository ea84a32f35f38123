#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "simulator/host/dcb.h"
#include "simulator/host/member.h"

/// The Fibre Channel fabric that the host's FCoE functions are attached to.
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

    static constexpr auto Members() {
        return std::tuple{Member{"number", &FabricLun::number},
                          Member{"vendor", &FabricLun::vendor, Presence::Optional},
                          Member{"product", &FabricLun::product, Presence::Optional},
                          Member{"revision", &FabricLun::revision, Presence::Optional},
                          Member{"capacity", &FabricLun::capacity, Presence::Optional},
                          Member{"blockSize", &FabricLun::blockSize, Presence::Optional},
                          Member{"deviceType", &FabricLun::deviceType, Presence::Optional},
                          Member{"deviceName", &FabricLun::deviceName, Presence::Optional},
                          Member{"status", &FabricLun::status, Presence::Optional},
                          Member{"volumes", &FabricLun::volumes, Presence::Optional}};
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

    static constexpr auto Members() {
        return std::tuple{
            Member{"portWwn", &FabricTarget::portWwn},
            Member{"nodeWwn", &FabricTarget::nodeWwn},
            Member{"fcid", &FabricTarget::fcid},
            Member{"symbolicName", &FabricTarget::symbolicName, Presence::Optional},
            Member{"initiators", &FabricTarget::initiators, Presence::Optional},
            Member{"delayMilliseconds", &FabricTarget::delayMilliseconds, Presence::Optional},
            Member{"lossPercent", &FabricTarget::lossPercent, Presence::Optional},
            Member{"luns", &FabricTarget::luns, Presence::Optional}};
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

    static constexpr auto Members() {
        return std::tuple{Member{"name", &FcoeFabric::name, Presence::Optional},
                          Member{"fcfMac", &FcoeFabric::fcfMac, Presence::Optional},
                          Member{"fcfNodeWwn", &FcoeFabric::fcfNodeWwn, Presence::Optional},
                          Member{"fcfPortWwn", &FcoeFabric::fcfPortWwn, Presence::Optional},
                          Member{"fcMap", &FcoeFabric::fcMap, Presence::Optional},
                          Member{"priority", &FcoeFabric::priority, Presence::Optional},
                          Member{"dcb", &FcoeFabric::dcb, Presence::Optional},
                          Member{"targets", &FcoeFabric::targets, Presence::Optional}};
    }
};

}  // namespace tavrosim
