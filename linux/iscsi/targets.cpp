// The targets that portals tell, and logging in to them.
#include <algorithm>

#include "linux/iscsi/discovery.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/rows.h"

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

// Blanks around a name do not count, neither here nor where the program looks a name up.
std::string WithoutOuterBlanks(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

Outcome ListTargets(const Place& at, std::list<TargetRecord>& targets) {
    targets.clear();
    return WithRefusals([&] {
        for (const KnownTarget& target : FindTargets(at, at.state.Read())) {
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
        record = RecordOf(FindTarget(at, at.state.Read(), name));
        return Done();
    });
}

// Whether a target that no list has is meant, is asked of the target itself.
Outcome LogInToTarget(const Place& at, const tavroapi::TargetLoginRecord& record) {
    const std::string name = WithoutOuterBlanks(record.targetName);
    if (record.login.dataDigest == "CRC32C") {
        return Refused(Status::NotOffered, L"This host cannot do that.",
                       L"See the details for what is missing.", L"data digests (-dd)");
    }
    return WithRefusals([&] {
        const Portal portal = PortalOf(record.portalAddress, record.portalPort);
        {
            const State state = at.state.Read();
            const EffectiveLogin login(record.login, state.initiatorLogin);
            SessionPlan plan = PlanFor(at, portal, name);
            plan.wantsImmediateData = record.text2 != "No";
            Session session(plan, login.Options());
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
            kept->login = record.login;
            Complete(kept->login);
        });
        return Refused(
            Status::NoSessionKept,
            L"The target accepted the login, but this host keeps no sessions.",
            L"Run the command with \"-target -lunlist\" to see the LUNs of the target.",
            L"target " + tavrolib::Quoted(name) + L", portal " + WideFromUtf8(TextOf(portal)));
    });
}

Outcome RemoveTarget(const Place& at, const std::string& name) {
    return WithRefusals([&] {
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
