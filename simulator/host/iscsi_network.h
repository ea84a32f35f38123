#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "simulator/host/member.h"

/// The iSCSI storage that the host's ports can reach.
namespace tavrosim {

/// An address at which targets answer. Addresses are compared as texts.
struct IscsiPortal {
    std::string address;
    std::string port = "3260";

    bool operator==(const IscsiPortal&) const = default;

    static constexpr auto Members() {
        return std::tuple{Member{"address", &IscsiPortal::address},
                          Member{"port", &IscsiPortal::port, Presence::Optional}};
    }
};

/// The CHAP names and secrets that a target wants: the initiator's proof of itself, and with a
/// second name also the target's own.
struct TargetChap {
    std::string targetName;
    std::string targetSecret;
    std::optional<std::string> initiatorName;
    std::string initiatorSecret;

    static constexpr auto Members() {
        return std::tuple{
            Member{"targetName", &TargetChap::targetName},
            Member{"targetSecret", &TargetChap::targetSecret},
            Member{"initiatorName", &TargetChap::initiatorName, Presence::Optional},
            Member{"initiatorSecret", &TargetChap::initiatorSecret, Presence::Optional}};
    }
};

/// A logical unit. Sizes are decimal texts as they are shown.
struct NetworkLun {
    std::uint32_t number = 0;
    std::string vendor;
    std::string product;
    std::string capacity;
    std::string blockSize = "512";
    std::string serialNumber;

    static constexpr auto Members() {
        return std::tuple{Member{"number", &NetworkLun::number},
                          Member{"vendor", &NetworkLun::vendor, Presence::Optional},
                          Member{"product", &NetworkLun::product, Presence::Optional},
                          Member{"capacity", &NetworkLun::capacity, Presence::Optional},
                          Member{"blockSize", &NetworkLun::blockSize, Presence::Optional},
                          Member{"serialNumber", &NetworkLun::serialNumber, Presence::Optional}};
    }
};

struct NetworkTarget {
    std::string name;
    std::string alias;
    std::vector<IscsiPortal> portals;
    std::string portalGroup = "1";
    std::optional<TargetChap> chap;  // without it the target asks nobody who they are
    std::vector<NetworkLun> luns;

    static constexpr auto Members() {
        return std::tuple{Member{"name", &NetworkTarget::name},
                          Member{"alias", &NetworkTarget::alias, Presence::Optional},
                          Member{"portals", &NetworkTarget::portals},
                          Member{"portalGroup", &NetworkTarget::portalGroup, Presence::Optional},
                          Member{"chap", &NetworkTarget::chap, Presence::Optional},
                          Member{"luns", &NetworkTarget::luns, Presence::Optional}};
    }
};

}  // namespace tavrosim
