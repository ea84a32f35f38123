#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "linux/iscsi/failure.h"
#include "linux/iscsi/portal.h"
#include "tavroapi/iscsi_records.h"

// Sessions with iSCSI targets over the network.
namespace tavrolinux {

// How long a portal may take for each step: to take the connection, to let the initiator in, to
// answer a question or a command.
inline constexpr std::chrono::milliseconds StepLimit{4000};

// How much a target may tell.
inline constexpr std::size_t MostTargets = 4096;
inline constexpr std::size_t MostPortals = 64;  // of one target
inline constexpr std::size_t MostLuns = 1024;

// Whom a session is with, and who wants it.
struct SessionPlan {
    std::string initiator;  // its name
    std::string interface;  // the connection leaves through it, unless it stays within this host
    Portal portal;
    std::string target;  // its name; empty for a session that only discovers targets
    // When the session has to be over, whatever its steps may take.
    std::chrono::steady_clock::time_point end = std::chrono::steady_clock::time_point::max();
};

// A target as a portal told of it.
struct DiscoveredTarget {
    std::string name;
    std::vector<AnnouncedPortal> portals;
};

// What a logical unit answered to a command: its SCSI status, and no bytes unless that is good.
struct CommandAnswer {
    bool isGood = false;
    std::uint8_t status = 0;
    std::uint8_t senseKey = 0;  // why it refused the command; 0 where it does not say
    std::vector<std::uint8_t> bytes;
};

// A session, from its login until it goes. It makes no second attempt at anything. Every function
// throws IscsiFailure: where nobody takes the connection, nothing comes within StepLimit, what
// comes is no iSCSI or more than was asked for, or the target refuses. The secrets of the login do
// not stay behind in memory.
class Session {
  public:
    // Connects and logs in: with the names and secrets of `login` where it has an authentication,
    // and with its header digest. A target that goes without them is refused, but a portal may tell
    // its targets without asking for the initiator's name and secret.
    Session(const SessionPlan& plan, const tavroapi::LoginOptions& login);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The targets behind the portal of a session that discovers, by their names.
    std::vector<DiscoveredTarget> Discover();

    // Commands to the unit with that address, or to the target for its units.
    CommandAnswer ReportLuns();
    CommandAnswer Inquire(std::uint16_t lun);
    CommandAnswer ReadSerialNumber(std::uint16_t lun);
    CommandAnswer ReadCapacity10(std::uint16_t lun);
    CommandAnswer ReadCapacity16(std::uint16_t lun);

    // Ends the session as the protocol wants it. Without it, the connection is just closed.
    void LogOut();

  private:
    class Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace tavrolinux
