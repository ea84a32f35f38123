// The targets that portals tell, and logging in to them.
#include <algorithm>

#include "linux/iscsi/discovery.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/rows.h"
#include "linux/iscsi/target_name.h"

namespace tavrolinux {
namespace {

using tavroapi::TargetRecord;

TargetRecord RecordOf(const KnownTarget& target) {
    TargetRecord record;
    record.name = target.name;
    record.connectionState = "Not connected";
    record.portalAddress = target.at.portal.address;
    record.portalPort = std::to_string(target.at.portal.port);
    record.discovery = target.wasDiscovered ? "SendTargets" : "Static";
    record.portalGroup = target.at.group;
    return record;
}

}  // namespace

Outcome ListTargets(const Place& at, std::list<TargetRecord>& targets) {
    targets.clear();
    return WithRefusals([&] {
        const State state = at.state.Read();
        for (const KnownTarget& target : FindTargets(at, state).targets) {
            targets.push_back(RecordOf(target));
        }
        return Done();
    });
}

Outcome ListActiveTargets(const Place& /*at*/, std::list<TargetRecord>& targets) {
    targets.clear();
    return Done();
}

Outcome ReadTarget(const Place& at, const std::string& name, TargetRecord& record) {
    return WithRefusals([&] {
        const State state = at.state.Read();
        record = RecordOf(FindTarget(at, state, TargetNameOf(name)));
        return Done();
    });
}

// Whether a target that no list has is meant, is asked of the target itself.
Outcome LogInToTarget(const Place& at, const tavroapi::TargetLoginRecord& record) {
    return WithRefusals([&] {
        const std::string name = TargetNameOf(record.targetName);
        const Portal portal = PortalOf(record.portalAddress, record.portalPort);
        WantUsable(record.login);
        at.state.WantRightToChange();
        const EffectiveLogin login(record.login, at.state.Read().initiatorLogin);
        {
            Session session(PlanFor(at, portal, name), login.Options());
            End(session);
        }
        at.state.Change([&](State& changed) {
            std::vector<KeptLogin>& logins = changed.interfaces[at.interface.name].logins;
            auto kept = std::ranges::find(logins, name, &KeptLogin::target);
            if (kept == logins.end()) {
                kept = logins.insert(kept, {name, {}, 0, {}});
            }
            kept->address = portal.address;
            kept->port = portal.port;
            kept->login = login.Options();
        });
        return Refused(
            Status::NoSessionKept,
            L"The target accepted the login, but this host keeps no sessions.",
            L"Run the command with \"-target -lunlist\" to see the LUNs of the target.",
            L"target " + tavrolib::Quoted(name) + L", portal " + WideFromUtf8(TextOf(portal)));
    });
}

Outcome RemoveTarget(const Place& at, const std::string& text) {
    return WithRefusals([&] {
        const std::string name = TargetNameOf(text);
        at.state.Change([&](State& changed) {
            const std::size_t removed =
                std::erase_if(changed.interfaces[at.interface.name].logins,
                              [&](const KeptLogin& login) { return login.target == name; });
            if (removed == 0) {
                throw IscsiFailure(
                    Refused(Status::UnknownIscsiTarget, L"No login at this target is kept.",
                            L"Targets that a portal tells go with the portal: run the "
                            L"command with \"-portal -remove\".",
                            L"target " + tavrolib::Quoted(name)));
            }
        });
        return Done();
    });
}

}  // namespace tavrolinux
