#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "linux/iscsi/wire.h"
#include "linux/serve/operation.h"

// Finding targets: at the portals that the initiator of an interface knows, each time anew.
namespace tavrolinux {

// A target, the portal through which it is reached, and how to log in there: both as the login that
// it accepted has them, else as the portal has them that told it.
struct KnownTarget {
    std::string name;
    AnnouncedPortal at;
    const WipedLogin* login = nullptr;  // within the state
    bool wasDiscovered = true;          // else it is known by a login that it accepted
};

// The targets that can be shown, and how many cannot, by their names.
struct FoundTargets {
    std::vector<KnownTarget> targets;
    std::size_t unusable = 0;
};

// The portal that the texts name, as commands give them. Throws IscsiFailure where they name none.
Portal PortalOf(const std::string& address, const std::string& port);

// A session from the place's interface. Throws IscsiFailure where the initiator has no name.
SessionPlan PlanFor(const Place& at, const Portal& portal, const std::string& target = {});

// Ends a session whose work is done, whatever the other side makes of that.
void End(Session& session);

// What the place's interface has in the state; nothing where it has none.
const InterfaceState& StateOf(const State& state, const Place& at);

// The login that a target accepted; null when none is kept.
const KeptLogin* FindKeptLogin(const State& state, const Place& at, std::string_view target);

// The target that accepted the login, in the group that its portal has among those that it told.
KnownTarget AcceptedBy(const KeptLogin& login, const std::vector<AnnouncedPortal>& told = {});

// Every target that a portal tells, in the order of the portals, then those that accepted a login
// and were not told. Portals that do not answer count for nothing as long as one does. Throws
// IscsiFailure with the reason of the first one when there are portals and none answers.
FoundTargets FindTargets(const Place& at, const State& state);

// The target of that name among them. Throws IscsiFailure where there is none.
KnownTarget FindTarget(const Place& at, const State& state, const std::string& name);

}  // namespace tavrolinux
