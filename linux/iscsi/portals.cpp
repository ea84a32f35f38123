// The portals that the initiator of an interface knows.
#include <algorithm>

#include "linux/iscsi/discovery.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/rows.h"

namespace tavrolinux {
namespace {

bool IsAt(const KeptPortal& kept, const Portal& portal) {
    return AreSame({kept.address, kept.port}, portal);
}

}  // namespace

Outcome ListPortals(const Place& at, std::list<tavroapi::PortalEntry>& portals) {
    portals.clear();
    const State state = at.state.Read();
    for (const KeptPortal& portal : StateOf(state, at).portals) {
        portals.push_back({portal.address, std::to_string(portal.port)});
    }
    return Done();
}

// A portal is kept once it has told its targets. For one that is kept already, how to log in there
// is kept as it was last said.
Outcome AddPortal(const Place& at, const tavroapi::PortalRecord& record) {
    return WithRefusals([&] {
        const Portal portal = PortalOf(record.address, record.port);
        WantUsable(record.login);
        at.state.WantRightToChange();
        const State state = at.state.Read();
        const EffectiveLogin login(record.login, state.initiatorLogin);
        Session session(PlanFor(at, portal), login.Options());
        session.Discover();
        End(session);
        at.state.Change([&](State& changed) {
            std::vector<KeptPortal>& portals = changed.interfaces[at.interface.name].portals;
            auto kept = std::ranges::find_if(
                portals, [&](const KeptPortal& known) { return IsAt(known, portal); });
            if (kept == portals.end()) {
                kept = portals.insert(kept, {portal.address, portal.port, {}});
            }
            kept->login = record.login;
            Complete(kept->login);
        });
        return Done();
    });
}

Outcome RemovePortal(const Place& at, const tavroapi::PortalRecord& record) {
    return WithRefusals([&] {
        const Portal portal = PortalOf(record.address, record.port);
        at.state.Change([&](State& changed) {
            const std::size_t removed =
                std::erase_if(changed.interfaces[at.interface.name].portals,
                              [&](const KeptPortal& known) { return IsAt(known, portal); });
            if (removed == 0) {
                throw IscsiFailure(
                    Refused(Status::UnknownPortal, L"The initiator does not know this portal.",
                            L"Run the command with \"-portal -listall\" to see the portals.",
                            WideFromUtf8("portal " + TextOf(portal))));
            }
        });
        return Done();
    });
}

}  // namespace tavrolinux
