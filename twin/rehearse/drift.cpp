#include "twin/rehearse/drift.h"

#include <set>
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

class Scope {
  public:
    Scope(const WorkedOn& worked, const tavrosim::Host& host) {
        for (const std::string& function : worked.functions) {
            if (const auto found = tavrosim::FindFunction(host, function)) {
                functions_.insert(Normal(function));
                adapters_.insert(found.adapter->name);
            }
        }
        for (const Change& change : worked.changes) {
            if (change.where.adapter.empty()) {
                hostMembers_.insert(std::string(FirstStep(change.where.member)));
            } else if (change.where.key.empty()) {
                wholeAdapters_.insert(change.where.adapter);
            } else {
                functions_.insert(Normal(change.where.key));
                adapters_.insert(change.where.adapter);
            }
        }
    }

    bool Holds(const HostPart& part) const {
        if (part.adapter.empty()) {
            return hostMembers_.contains(FirstStep(part.member));
        }
        if (wholeAdapters_.contains(part.adapter)) {
            return true;
        }
        return part.key.empty() ? adapters_.contains(part.adapter)
                                : functions_.contains(Normal(part.key));
    }

  private:
    std::set<std::string, std::less<>> functions_;
    std::set<std::string, std::less<>> adapters_;       // that hold them
    std::set<std::string, std::less<>> wholeAdapters_;  // changed themselves, with all they hold
    std::set<std::string, std::less<>> hostMembers_;
};

}  // namespace

std::vector<Change> ChangesWithin(const WorkedOn& worked, const tavrosim::Host& host,
                                  std::vector<Change> changes) {
    const Scope scope(worked, host);
    std::erase_if(changes, [&](const Change& change) { return !scope.Holds(change.where); });
    return changes;
}

}  // namespace tavrohost
