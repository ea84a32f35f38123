#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/host/member.h"

// The iSCSI storage that the host's ports can reach.
namespace tavrosim {

// An address at which targets answer. Addresses are compared as texts.
struct IscsiPortal {
    std::string address;
    std::string port = "3260";

    bool operator==(const IscsiPortal&) const = default;

    static constexpr auto Members(auto visit) {
        return visit(Member{"address", &IscsiPortal::address, Presence::Required},
                     Member{"port", &IscsiPortal::port});
    }
};

// The CHAP names and secrets that a target wants: the initiator's proof of itself, and with a
// second name also the target's own.
struct TargetChap {
    std::string targetName;
    std::string targetSecret;
    std::optional<std::string> initiatorName;
    std::string initiatorSecret;

    static constexpr auto Members(auto visit) {
        return visit(Member{"targetName", &TargetChap::targetName, Presence::Required},
                     Member{"targetSecret", &TargetChap::targetSecret, Presence::Required},
                     Member{"initiatorName", &TargetChap::initiatorName},
                     Member{"initiatorSecret", &TargetChap::initiatorSecret});
    }
};

// A logical unit. Sizes are decimal texts as they are shown.
struct NetworkLun {
    std::uint32_t number = 0;
    std::string vendor;
    std::string product;
    std::string capacity;
    std::string blockSize = "512";
    std::string serialNumber;

    static constexpr auto Members(auto visit) {
        return visit(Member{"number", &NetworkLun::number, Presence::Required},
                     Member{"vendor", &NetworkLun::vendor}, Member{"product", &NetworkLun::product},
                     Member{"capacity", &NetworkLun::capacity},
                     Member{"blockSize", &NetworkLun::blockSize},
                     Member{"serialNumber", &NetworkLun::serialNumber});
    }
};

struct NetworkTarget {
    std::string name;
    std::string alias;
    std::vector<IscsiPortal> portals;
    std::string portalGroup = "1";
    std::optional<TargetChap> chap;  // without it the target asks nobody who they are
    std::vector<NetworkLun> luns;

    static constexpr auto Members(auto visit) {
        return visit(Member{"name", &NetworkTarget::name, Presence::Required},
                     Member{"alias", &NetworkTarget::alias},
                     Member{"portals", &NetworkTarget::portals, Presence::Required},
                     Member{"portalGroup", &NetworkTarget::portalGroup},
                     Member{"chap", &NetworkTarget::chap}, Member{"luns", &NetworkTarget::luns});
    }
};

}  // namespace tavrosim
