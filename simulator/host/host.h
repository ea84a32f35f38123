#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/host/ethernet.h"
#include "simulator/host/fcoe.h"
#include "simulator/host/fcoe_fabric.h"
#include "simulator/host/hardware.h"
#include "simulator/host/initiator.h"
#include "simulator/host/iscsi.h"
#include "simulator/host/iscsi_network.h"
#include "simulator/host/member.h"
#include "simulator/host/network.h"
#include "simulator/host/partition.h"
#include "tavroapi/codes.h"

// The host that the model plays. The structs are what the host file holds, member for member.
namespace tavrosim {

class CapturedAnswers;

// One function of a port. Exactly one of its three parts is there and tells what kind it is.
struct Function {
    std::uint32_t number = 0;
    std::string mac;
    std::optional<EthernetPart> ethernet;
    std::optional<IscsiPart> iscsi;
    std::optional<FcoePart> fcoe;

    static constexpr auto Members(auto visit) {
        return visit(Member{"number", &Function::number, Presence::Required},
                     Member{"mac", &Function::mac, Presence::Required},
                     Member{"ethernet", &Function::ethernet}, Member{"iscsi", &Function::iscsi},
                     Member{"fcoe", &Function::fcoe});
    }
};

struct Port {
    std::string name;
    std::optional<PortLink> link;
    std::optional<Resources> resources;
    std::vector<Function> functions;

    static constexpr auto Members(auto visit) {
        return visit(Member{"name", &Port::name, Presence::Required}, Member{"link", &Port::link},
                     Member{"resources", &Port::resources},
                     Member{"functions", &Port::functions, Presence::Required});
    }
};

struct Adapter {
    std::string name;  // holds the model designation; no two adapters of a host share it
    std::uint32_t number = 0;
    std::string type;
    std::uint32_t partitionState = tavroapi::NotPartitioned;
    std::string state;  // what operation 70 tells
    std::optional<Card> card;
    std::optional<Partitions> partitions;
    std::optional<Partitions> pendingPartitions;  // what the restart will make of them
    std::vector<Port> ports;

    static constexpr auto Members(auto visit) {
        return visit(Member{"name", &Adapter::name, Presence::Required},
                     Member{"number", &Adapter::number, Presence::Required},
                     Member{"type", &Adapter::type, Presence::Required},
                     Member{"partitionState", &Adapter::partitionState, Presence::Required},
                     Member{"state", &Adapter::state}, Member{"card", &Adapter::card},
                     Member{"partitions", &Adapter::partitions},
                     Member{"pendingPartitions", &Adapter::pendingPartitions},
                     Member{"ports", &Adapter::ports, Presence::Required});
    }
};

// The format of host files that this library reads and writes.
inline constexpr std::uint32_t HostFormat = 1;

struct Host {
    std::uint32_t format = HostFormat;
    std::string name;
    Initiator initiator;
    std::vector<std::string> isnsServers;
    std::vector<ReachableAddress> reachable;
    std::vector<Adapter> adapters;
    std::vector<NetworkTarget> iscsiTargets;  // what is out on the network
    FcoeFabric fcoeFabric;

    // Of a host that was captured from another library: that library's answers, and the host as it
    // was made of them. Both are null for any other host; of a host as captured the second is. No
    // operation changes them.
    std::shared_ptr<const CapturedAnswers> captured;
    std::shared_ptr<const Host> asCaptured;

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"format", &Host::format}, Member{"name", &Host::name, Presence::Required},
            Member{"initiator", &Host::initiator}, Member{"isnsServers", &Host::isnsServers},
            Member{"reachable", &Host::reachable},
            Member{"adapters", &Host::adapters, Presence::Required},
            Member{"iscsiTargets", &Host::iscsiTargets}, Member{"fcoeFabric", &Host::fcoeFabric});
    }
};

// Whether the host was captured, now or as captured. Its counters stand still then.
inline bool IsCaptured(const Host& host) {
    return host.captured != nullptr;
}

}  // namespace tavrosim
