#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "simulator/host/iscsi_network.h"
#include "simulator/host/member.h"

/// What an iSCSI function is and what its initiator knows and does.
namespace tavrosim {

/// The driver and the hardware of an iSCSI function.
struct IscsiHardware {
    std::string driver = "tavroi";
    std::string driverVersion = "5.2.3.1";
    std::string firmwareVersion = "5.2.3.0";
    std::string serialNumber;
    std::string linkState = "Up";
    std::string linkSpeed = "10 Gbit/s";

    static constexpr auto Members() {
        return std::tuple{
            Member{"driver", &IscsiHardware::driver, Presence::Optional},
            Member{"driverVersion", &IscsiHardware::driverVersion, Presence::Optional},
            Member{"firmwareVersion", &IscsiHardware::firmwareVersion, Presence::Optional},
            Member{"serialNumber", &IscsiHardware::serialNumber, Presence::Optional},
            Member{"linkState", &IscsiHardware::linkState, Presence::Optional},
            Member{"linkSpeed", &IscsiHardware::linkSpeed, Presence::Optional}};
    }
};

/// A target that the initiator has discovered, and where.
struct KnownTarget {
    std::string name;
    IscsiPortal portal;
    std::string discovery;  // "SendTargets" through a portal, "Static" by name

    static constexpr auto Members() {
        return std::tuple{Member{"name", &KnownTarget::name},
                          Member{"portal", &KnownTarget::portal},
                          Member{"discovery", &KnownTarget::discovery}};
    }
};

struct IscsiSession {
    std::uint32_t id = 0;
    std::string target;
    IscsiPortal portal;
    std::string authentication = "None";
    std::string targetChapName;
    std::string initiatorChapName;
    std::string headerDigest = "No";
    std::string dataDigest = "No";
    std::string multipath = "Yes";

    static constexpr auto Members() {
        return std::tuple{
            Member{"id", &IscsiSession::id},
            Member{"target", &IscsiSession::target},
            Member{"portal", &IscsiSession::portal},
            Member{"authentication", &IscsiSession::authentication, Presence::Optional},
            Member{"targetChapName", &IscsiSession::targetChapName, Presence::Optional},
            Member{"initiatorChapName", &IscsiSession::initiatorChapName, Presence::Optional},
            Member{"headerDigest", &IscsiSession::headerDigest, Presence::Optional},
            Member{"dataDigest", &IscsiSession::dataDigest, Presence::Optional},
            Member{"multipath", &IscsiSession::multipath, Presence::Optional}};
    }
};

struct IscsiStatistics {
    std::uint64_t bytesSent = 0;
    std::uint64_t bytesReceived = 0;
    std::uint64_t pdusSent = 0;
    std::uint64_t pdusReceived = 0;
    std::uint64_t scsiCommands = 0;
    std::uint64_t scsiResponses = 0;
    std::uint64_t readyToTransfer = 0;
    std::uint64_t taskCommands = 0;
    std::uint64_t logins = 0;
    std::uint64_t logouts = 0;
    std::uint64_t nopsSent = 0;
    std::uint64_t nopsReceived = 0;
    std::uint64_t digestErrors = 0;
    std::uint64_t connectionErrors = 0;

    static constexpr auto Members() {
        return std::tuple{
            Member{"bytesSent", &IscsiStatistics::bytesSent, Presence::Optional},
            Member{"bytesReceived", &IscsiStatistics::bytesReceived, Presence::Optional},
            Member{"pdusSent", &IscsiStatistics::pdusSent, Presence::Optional},
            Member{"pdusReceived", &IscsiStatistics::pdusReceived, Presence::Optional},
            Member{"scsiCommands", &IscsiStatistics::scsiCommands, Presence::Optional},
            Member{"scsiResponses", &IscsiStatistics::scsiResponses, Presence::Optional},
            Member{"readyToTransfer", &IscsiStatistics::readyToTransfer, Presence::Optional},
            Member{"taskCommands", &IscsiStatistics::taskCommands, Presence::Optional},
            Member{"logins", &IscsiStatistics::logins, Presence::Optional},
            Member{"logouts", &IscsiStatistics::logouts, Presence::Optional},
            Member{"nopsSent", &IscsiStatistics::nopsSent, Presence::Optional},
            Member{"nopsReceived", &IscsiStatistics::nopsReceived, Presence::Optional},
            Member{"digestErrors", &IscsiStatistics::digestErrors, Presence::Optional},
            Member{"connectionErrors", &IscsiStatistics::connectionErrors, Presence::Optional}};
    }
};

struct IscsiStorage {
    std::vector<IscsiPortal> portals;
    std::vector<KnownTarget> targets;
    std::vector<IscsiSession> sessions;
    std::uint32_t lastSessionId = 0;
    IscsiStatistics statistics;

    static constexpr auto Members() {
        return std::tuple{Member{"portals", &IscsiStorage::portals, Presence::Optional},
                          Member{"targets", &IscsiStorage::targets, Presence::Optional},
                          Member{"sessions", &IscsiStorage::sessions, Presence::Optional},
                          Member{"lastSessionId", &IscsiStorage::lastSessionId, Presence::Optional},
                          Member{"statistics", &IscsiStorage::statistics, Presence::Optional}};
    }
};

}  // namespace tavrosim
