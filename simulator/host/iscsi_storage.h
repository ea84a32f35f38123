#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/host/iscsi_network.h"
#include "simulator/host/login.h"
#include "simulator/host/member.h"

// What the initiator of an iSCSI function knows and does.
namespace tavrosim {

// A portal that was added, and how to log in at it.
struct KnownPortal : IscsiPortal {
    Login login;

    static constexpr auto Members(auto visit) {
        return IscsiPortal::Members([&](const auto&... member) {
            return visit(member..., Member{"login", &KnownPortal::login});
        });
    }
};

// A target that the initiator has discovered, and where.
struct KnownTarget {
    std::string name;
    IscsiPortal portal;
    std::string discovery;  // "SendTargets" through a portal, "Static" by name

    static constexpr auto Members(auto visit) {
        return visit(Member{"name", &KnownTarget::name, Presence::Required},
                     Member{"portal", &KnownTarget::portal, Presence::Required},
                     Member{"discovery", &KnownTarget::discovery, Presence::Required});
    }
};

struct IscsiSession {
    std::uint32_t id = 0;
    std::string target;
    IscsiPortal portal;
    std::string initiatorName;  // empty: the one that the host's initiator has
    std::string authentication = "None";
    std::string targetChapName;
    std::string initiatorChapName;
    std::string headerDigest = "No";
    std::string dataDigest = "No";
    std::string multipath = "Yes";
    std::string immediateData;  // empty: what the port proposes

    static constexpr auto Members(auto visit) {
        return visit(Member{"id", &IscsiSession::id, Presence::Required},
                     Member{"target", &IscsiSession::target, Presence::Required},
                     Member{"portal", &IscsiSession::portal, Presence::Required},
                     Member{"initiatorName", &IscsiSession::initiatorName},
                     Member{"authentication", &IscsiSession::authentication},
                     Member{"targetChapName", &IscsiSession::targetChapName},
                     Member{"initiatorChapName", &IscsiSession::initiatorChapName},
                     Member{"headerDigest", &IscsiSession::headerDigest},
                     Member{"dataDigest", &IscsiSession::dataDigest},
                     Member{"multipath", &IscsiSession::multipath},
                     Member{"immediateData", &IscsiSession::immediateData});
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

    static constexpr auto Members(auto visit) {
        return visit(Member{"bytesSent", &IscsiStatistics::bytesSent},
                     Member{"bytesReceived", &IscsiStatistics::bytesReceived},
                     Member{"pdusSent", &IscsiStatistics::pdusSent},
                     Member{"pdusReceived", &IscsiStatistics::pdusReceived},
                     Member{"scsiCommands", &IscsiStatistics::scsiCommands},
                     Member{"scsiResponses", &IscsiStatistics::scsiResponses},
                     Member{"readyToTransfer", &IscsiStatistics::readyToTransfer},
                     Member{"taskCommands", &IscsiStatistics::taskCommands},
                     Member{"logins", &IscsiStatistics::logins},
                     Member{"logouts", &IscsiStatistics::logouts},
                     Member{"nopsSent", &IscsiStatistics::nopsSent},
                     Member{"nopsReceived", &IscsiStatistics::nopsReceived},
                     Member{"digestErrors", &IscsiStatistics::digestErrors},
                     Member{"connectionErrors", &IscsiStatistics::connectionErrors});
    }
};

struct IscsiStorage {
    std::vector<KnownPortal> portals;
    std::vector<KnownTarget> targets;
    std::vector<IscsiSession> sessions;
    std::uint32_t lastSessionId = 0;
    IscsiStatistics statistics;

    static constexpr auto Members(auto visit) {
        return visit(Member{"portals", &IscsiStorage::portals},
                     Member{"targets", &IscsiStorage::targets},
                     Member{"sessions", &IscsiStorage::sessions},
                     Member{"lastSessionId", &IscsiStorage::lastSessionId},
                     Member{"statistics", &IscsiStorage::statistics});
    }
};

}  // namespace tavrosim
