#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "simulator/host/member.h"

// How iSCSI and FCoE functions boot, as the host file holds it: the values of the contract's
// records.
namespace tavrosim {

struct IscsiBootTarget {
    std::string used = "Disabled";
    std::string address;
    std::string port = "3260";
    std::string lun = "0";
    std::string name;
    std::string chapName;
    std::string chapSecret;

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"used", &IscsiBootTarget::used}, Member{"address", &IscsiBootTarget::address},
            Member{"port", &IscsiBootTarget::port}, Member{"lun", &IscsiBootTarget::lun},
            Member{"name", &IscsiBootTarget::name}, Member{"chapName", &IscsiBootTarget::chapName},
            Member{"chapSecret", &IscsiBootTarget::chapSecret});
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

    static constexpr auto Members(auto visit) {
        return visit(
            Member{"tcpIpByDhcp", &IscsiBoot::tcpIpByDhcp},
            Member{"parametersByDhcp", &IscsiBoot::parametersByDhcp},
            Member{"linkUpDelay", &IscsiBoot::linkUpDelay},
            Member{"retryCount", &IscsiBoot::retryCount}, Member{"address", &IscsiBoot::address},
            Member{"subnetMask", &IscsiBoot::subnetMask}, Member{"gateway", &IscsiBoot::gateway},
            Member{"initiatorName", &IscsiBoot::initiatorName},
            Member{"chapName", &IscsiBoot::chapName}, Member{"chapSecret", &IscsiBoot::chapSecret},
            Member{"firstTarget", &IscsiBoot::firstTarget},
            Member{"secondTarget", &IscsiBoot::secondTarget},
            Member{"addressBinding", &IscsiBoot::addressBinding},
            Member{"boundAddress", &IscsiBoot::boundAddress},
            Member{"targetIsFirstDisk", &IscsiBoot::targetIsFirstDisk},
            Member{"bootFromTarget", &IscsiBoot::bootFromTarget});
    }
};

struct FcoeBootEntry {
    std::string target;
    std::string lun;
    std::string state;

    static constexpr auto Members(auto visit) {
        return visit(Member{"target", &FcoeBootEntry::target}, Member{"lun", &FcoeBootEntry::lun},
                     Member{"state", &FcoeBootEntry::state});
    }
};

struct FcoeBoot {
    std::string state = "Disabled";
    std::string fabricDiscovery = "Disabled";
    std::optional<std::string> codeVersion;  // stands with the hardware now
    std::uint32_t busyRetries = 30;
    std::uint32_t linkUpDelay = 15;
    std::uint32_t loginRetries = 3;
    std::array<FcoeBootEntry, 8> targets;

    static constexpr auto Members(auto visit) {
        return visit(Member{"state", &FcoeBoot::state},
                     Member{"fabricDiscovery", &FcoeBoot::fabricDiscovery},
                     Member{"codeVersion", &FcoeBoot::codeVersion, Presence::Former},
                     Member{"busyRetries", &FcoeBoot::busyRetries},
                     Member{"linkUpDelay", &FcoeBoot::linkUpDelay},
                     Member{"loginRetries", &FcoeBoot::loginRetries},
                     Member{"targets", &FcoeBoot::targets});
    }
};

}  // namespace tavrosim
