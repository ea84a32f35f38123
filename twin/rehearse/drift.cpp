#include "twin/rehearse/drift.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "simulator/host/lookup.h"

namespace tavrohost {
namespace {

// "initiator" of "initiator.login.multipath", "isnsServers" of "isnsServers[192.0.2.1]".
std::string_view FirstStep(std::string_view member) {
    return member.substr(0, member.find_first_of(".["));
}

// An identifier however it is written; a text that is none counts as it stands.
std::string Normal(const std::string& identifier) {
    std::string normal = tavrosim::NormalIdentifier(identifier);
    return normal.empty() ? identifier : normal;
}

using PortName = std::pair<std::string, std::string>;  // the adapter's, and its own

class Scope {
  public:
    Scope(const WorkedOn& worked, const tavrosim::Host& host) {
        for (const std::string& function : worked.functions) {
            if (const auto found = tavrosim::FindFunction(host, function)) {
                functions_.insert(Normal(tavrosim::KeyOf(*found.function)));
                TakeHolders(found.adapter->name, found.port->name);
            }
        }
        for (const Change& change : worked.changes) {
            Take(change.where);
        }
    }

    bool Holds(const HostPart& part) const {
        if (part.level == HostPart::Level::Host) {
            return hostMembers_.contains(FirstStep(part.member));
        }
        if (wholeAdapters_.contains(part.adapter)) {
            return true;
        }
        if (part.level == HostPart::Level::Adapter) {
            return adapters_.contains(part.adapter);
        }
        const PortName port{part.adapter, part.port};
        return wholePorts_.contains(port) ||
               (part.level == HostPart::Level::Port ? ports_.contains(port)
                                                    : functions_.contains(Normal(part.key)));
    }

  private:
    void TakeHolders(const std::string& adapter, const std::string& port) {
        adapters_.insert(adapter);
        ports_.emplace(adapter, port);
    }

    void Take(const HostPart& part) {
        if (part.level == HostPart::Level::Host) {
            hostMembers_.insert(std::string(FirstStep(part.member)));
        } else if (part.level == HostPart::Level::Adapter) {
            wholeAdapters_.insert(part.adapter);
        } else {
            TakeHolders(part.adapter, part.port);
            if (part.level == HostPart::Level::Port) {
                wholePorts_.emplace(part.adapter, part.port);
            } else {
                functions_.insert(Normal(part.key));
            }
        }
    }

    std::set<std::string, std::less<>> functions_;
    std::set<std::string, std::less<>> adapters_;       // that hold them
    std::set<PortName> ports_;                          // that hold them
    std::set<std::string, std::less<>> wholeAdapters_;  // changed themselves, with all they hold
    std::set<PortName> wholePorts_;                     // likewise
    std::set<std::string, std::less<>> hostMembers_;
};

struct MemberRow {
    std::string_view member;  // the way below a function, port or adapter
    std::string_view reason;
};

// What on a host is another from one look to the next, though nobody changed it. Counters are
// compared nowhere.
constexpr MemberRow MovingMembers[] = {
    {"settings.temperature", "the reading of a sensor"},
};

// What a capture cannot tell, so that a twin may have it where a host seems not to.
constexpr MemberRow UntoldMembers[] = {
    {"pendingPartitions", "in force at the restart"},
    {"resources.pendingPersonality", "in force at the restart"},
    {"tcpIp.pendingVlanId", "in force at the restart"},
};

// Whether the member is the row's, or lies in it.
bool IsIn(std::string_view member, const MemberRow& row) {
    return member.starts_with(row.member) &&
           (member.size() == row.member.size() || member[row.member.size()] == '.' ||
            member[row.member.size()] == '[');
}

template <std::size_t Count>
bool StandsIn(const MemberRow (&table)[Count], const Change& change) {
    return std::ranges::any_of(
        table, [&](const MemberRow& row) { return IsIn(change.where.member, row); });
}

}  // namespace

std::vector<Change> ChangesWithin(const WorkedOn& worked, const tavrosim::Host& host,
                                  std::vector<Change> changes) {
    const Scope scope(worked, host);
    std::erase_if(changes, [&](const Change& change) {
        return !scope.Holds(change.where) || StandsIn(MovingMembers, change) ||
               StandsIn(UntoldMembers, change);
    });
    return changes;
}

}  // namespace tavrohost
