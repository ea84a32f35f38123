#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <tuple>

#include "simulator/host/member.h"

/// How iSCSI and FCoE functions boot, as the host file holds it: the values of the contract's
/// records.
namespace tavrosim {

struct IscsiBootTarget {
    std::string used = "Disabled";
    std::string address;
    std::string port = "3260";
    std::string lun = "0";
    std::string name;
    std::string chapName;
    std::string chapSecret;

    static constexpr auto Members() {
        return std::tuple{Member{"used", &IscsiBootTarget::used, Presence::Optional},
                          Member{"address", &IscsiBootTarget::address, Presence::Optional},
                          Member{"port", &IscsiBootTarget::port, Presence::Optional},
                          Member{"lun", &IscsiBootTarget::lun, Presence::Optional},
                          Member{"name", &IscsiBootTarget::name, Presence::Optional},
                          Member{"chapName", &IscsiBootTarget::chapName, Presence::Optional},
                          Member{"chapSecret", &IscsiBootTarget::chapSecret, Presence::Optional}};
    }
};

struct IscsiBoot {
    std::string tcpIpByDhcp = "Enabled";
    std::string parametersByDhcp = "Enabled";
    std::string linkUpDelay = "0";
    std::string retryCount = "0";
    std::string address;
    std::string subnetMask;
    std::string gateway;
    std::string initiatorName;
    std::string chapName;
    std::string chapSecret;
    IscsiBootTarget firstTarget;
    IscsiBootTarget secondTarget;
    std::string addressBinding = "Disabled";
    std::string boundAddress;
    std::string targetIsFirstDisk = "Disabled";
    std::string bootFromTarget = "Disabled";

    static constexpr auto Members() {
        return std::tuple{
            Member{"tcpIpByDhcp", &IscsiBoot::tcpIpByDhcp, Presence::Optional},
            Member{"parametersByDhcp", &IscsiBoot::parametersByDhcp, Presence::Optional},
            Member{"linkUpDelay", &IscsiBoot::linkUpDelay, Presence::Optional},
            Member{"retryCount", &IscsiBoot::retryCount, Presence::Optional},
            Member{"address", &IscsiBoot::address, Presence::Optional},
            Member{"subnetMask", &IscsiBoot::subnetMask, Presence::Optional},
            Member{"gateway", &IscsiBoot::gateway, Presence::Optional},
            Member{"initiatorName", &IscsiBoot::initiatorName, Presence::Optional},
            Member{"chapName", &IscsiBoot::chapName, Presence::Optional},
            Member{"chapSecret", &IscsiBoot::chapSecret, Presence::Optional},
            Member{"firstTarget", &IscsiBoot::firstTarget, Presence::Optional},
            Member{"secondTarget", &IscsiBoot::secondTarget, Presence::Optional},
            Member{"addressBinding", &IscsiBoot::addressBinding, Presence::Optional},
            Member{"boundAddress", &IscsiBoot::boundAddress, Presence::Optional},
            Member{"targetIsFirstDisk", &IscsiBoot::targetIsFirstDisk, Presence::Optional},
            Member{"bootFromTarget", &IscsiBoot::bootFromTarget, Presence::Optional}};
    }
};

struct FcoeBootEntry {
    std::string target;
    std::string lun;
    std::string state;

    static constexpr auto Members() {
        return std::tuple{Member{"target", &FcoeBootEntry::target, Presence::Optional},
                          Member{"lun", &FcoeBootEntry::lun, Presence::Optional},
                          Member{"state", &FcoeBootEntry::state, Presence::Optional}};
    }
};

struct FcoeBoot {
    std::string state = "Disabled";
    std::string fabricDiscovery = "Disabled";
    std::string codeVersion = "5.2.3";
    std::uint32_t busyRetries = 30;
    std::uint32_t linkUpDelay = 15;
    std::uint32_t loginRetries = 3;
    std::array<FcoeBootEntry, 8> targets;

    static constexpr auto Members() {
        return std::tuple{Member{"state", &FcoeBoot::state, Presence::Optional},
                          Member{"fabricDiscovery", &FcoeBoot::fabricDiscovery, Presence::Optional},
                          Member{"codeVersion", &FcoeBoot::codeVersion, Presence::Optional},
                          Member{"busyRetries", &FcoeBoot::busyRetries, Presence::Optional},
                          Member{"linkUpDelay", &FcoeBoot::linkUpDelay, Presence::Optional},
                          Member{"loginRetries", &FcoeBoot::loginRetries, Presence::Optional},
                          Member{"targets", &FcoeBoot::targets, Presence::Optional}};
    }
};

}  // namespace tavrosim
