#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "simulator/host/ethernet.h"
#include "simulator/host/fcoe.h"
#include "simulator/host/fcoe_fabric.h"
#include "simulator/host/initiator.h"
#include "simulator/host/iscsi.h"
#include "simulator/host/iscsi_network.h"
#include "simulator/host/member.h"
#include "simulator/host/network.h"
#include "simulator/host/partition.h"

/// The host that the model plays. The structs are what the host file holds, member for member.
namespace tavrosim {

/// One function of a port. Exactly one of its three parts is there and tells what kind it is.
struct Function {
    std::uint32_t number = 0;
    std::string mac;
    std::optional<EthernetPart> ethernet;
    std::optional<IscsiPart> iscsi;
    std::optional<FcoePart> fcoe;

    static constexpr auto Members() {
        return std::tuple{Member{"number", &Function::number}, Member{"mac", &Function::mac},
                          Member{"ethernet", &Function::ethernet, Presence::Optional},
                          Member{"iscsi", &Function::iscsi, Presence::Optional},
                          Member{"fcoe", &Function::fcoe, Presence::Optional}};
    }
};

struct Port {
    std::string name;
    std::optional<Resources> resources;
    std::vector<Function> functions;

    static constexpr auto Members() {
        return std::tuple{Member{"name", &Port::name},
                          Member{"resources", &Port::resources, Presence::Optional},
                          Member{"functions", &Port::functions}};
    }
};

struct Adapter {
    std::string name;  // holds the model designation; no two adapters of a host share it
    std::uint32_t number = 0;
    std::string type;
    std::uint32_t partitionState = 1;
    std::string state;  // what operation 70 tells
    std::optional<Partitions> partitions;
    std::vector<Port> ports;

    static constexpr auto Members() {
        return std::tuple{Member{"name", &Adapter::name},
                          Member{"number", &Adapter::number},
                          Member{"type", &Adapter::type},
                          Member{"partitionState", &Adapter::partitionState},
                          Member{"state", &Adapter::state, Presence::Optional},
                          Member{"partitions", &Adapter::partitions, Presence::Optional},
                          Member{"ports", &Adapter::ports}};
    }
};

struct Host {
    std::string name;
    Initiator initiator;
    std::vector<std::string> isnsServers;
    std::vector<ReachableAddress> reachable;
    std::vector<Adapter> adapters;
    std::vector<NetworkTarget> iscsiTargets;  // what is out on the network
    FcoeFabric fcoeFabric;

    static constexpr auto Members() {
        return std::tuple{Member{"name", &Host::name},
                          Member{"initiator", &Host::initiator, Presence::Optional},
                          Member{"isnsServers", &Host::isnsServers, Presence::Optional},
                          Member{"reachable", &Host::reachable, Presence::Optional},
                          Member{"adapters", &Host::adapters},
                          Member{"iscsiTargets", &Host::iscsiTargets, Presence::Optional},
                          Member{"fcoeFabric", &Host::fcoeFabric, Presence::Optional}};
    }
};

}  // namespace tavrosim
