#include "linux/iscsi/discovery.h"

#include <algorithm>
#include <future>
#include <optional>
#include <set>
#include <utility>

#include "linux/iscsi/initiator_name.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/target_name.h"
#include "linux/netlink/addresses.h"

namespace tavrolinux {
namespace {

// How many portals are asked at a time, each of which may be silent for a while.
constexpr std::size_t PortalsAtOnce = 16;

// What came of asking one portal.
struct PortalAnswer {
    std::optional<Outcome> refusal;
    std::vector<DiscoveredTarget> targets;
};

PortalAnswer Ask(const SessionPlan& plan, const KeptPortal& portal,
                 const tavroapi::LoginOptions& initiator) {
    try {
        const EffectiveLogin login(portal.login, initiator);
        Session session(plan, login.Options());
        PortalAnswer answer{{}, session.Discover()};
        End(session);
        return answer;
    } catch (const IscsiFailure& failure) {
        return {failure.Refusal(), {}};
    }
}

std::vector<PortalAnswer> AskAll(const Place& at, const State& state) {
    const std::vector<KeptPortal>& portals = StateOf(state, at).portals;
    std::vector<PortalAnswer> answers;
    for (std::size_t first = 0; first < portals.size(); first += PortalsAtOnce) {
        std::vector<std::future<PortalAnswer>> asked;
        const std::size_t end = std::min(portals.size(), first + PortalsAtOnce);
        for (std::size_t portal = first; portal < end; ++portal) {
            const KeptPortal& kept = portals[portal];
            asked.push_back(std::async(
                std::launch::async, [&state, &kept, plan = PlanFor(at, {kept.address, kept.port})] {
                    return Ask(plan, kept, state.initiatorLogin);
                }));
        }
        for (std::future<PortalAnswer>& answer : asked) {
            answers.push_back(answer.get());
        }
    }
    return answers;
}

// Through which of its portals a target is reached: the one that was asked, else the first one with
// an address, else the one that was asked all the same. A name is no address: looking it up takes
// as long as the servers of names please, and asks them what a target has made up.
AnnouncedPortal ReachedAt(const DiscoveredTarget& target, const Portal& asked) {
    const AnnouncedPortal* usable = nullptr;
    for (const AnnouncedPortal& portal : target.portals) {
        const auto address = IpAddressFrom(portal.portal.address);
        if (AreSame(portal.portal, asked)) {
            return {asked, portal.group};
        }
        if (usable == nullptr && address && !address->IsZero()) {
            usable = &portal;
        }
    }
    return usable == nullptr ? AnnouncedPortal{asked, {}} : *usable;
}

}  // namespace

Portal PortalOf(const std::string& address, const std::string& port) {
    if (!IpAddressFrom(address)) {
        throw IscsiFailure(tavrolib::NotAnAddress(Status::TargetUnreachable, address));
    }
    if (IsNoPlace(address)) {
        throw IscsiFailure(
            Refused(Status::TargetUnreachable, L"No portal has this address.",
                    L"Check the address, the port number, the cabling and the TCP/IP settings.",
                    L"address " + tavrolib::Quoted(address)));
    }
    const auto number = PortFrom(port);
    if (!number) {
        throw IscsiFailure(Refused(Status::TargetUnreachable, L"The port number is not usable.",
                                   L"Give a number from 1 to 65535.",
                                   L"port number " + tavrolib::Quoted(port)));
    }
    return {address, *number};
}

SessionPlan PlanFor(const Place& at, const Portal& portal, const std::string& target) {
    SessionPlan plan{ReadInitiatorName(at.machine.SystemRoots()), at.interface.name, portal,
                     target};
    if (plan.initiator.empty()) {
        throw IscsiFailure(Refused(Status::InvalidInitiatorName,
                                   L"The host's initiator has no name.",
                                   L"Set the name with \"-iscsi -setinitiator\".",
                                   InitiatorNameFile(at.machine.SystemRoots()).wstring()));
    }
    if (!IsInitiatorName(plan.initiator)) {
        throw IscsiFailure(Refused(Status::InvalidInitiatorName,
                                   L"The initiator name is not usable.",
                                   L"Set the name with \"-iscsi -setinitiator\".",
                                   InitiatorNameFile(at.machine.SystemRoots()).wstring() +
                                       L": name " + tavrolib::Quoted(plan.initiator)));
    }
    return plan;
}

void End(Session& session) {
    try {
        session.LogOut();
    } catch (const IscsiFailure&) {
        // The connection is closed all the same.
    }
}

const InterfaceState& StateOf(const State& state, const Place& at) {
    static const InterfaceState Nothing;
    const auto found = state.interfaces.find(at.interface.name);
    return found == state.interfaces.end() ? Nothing : found->second;
}

const KeptLogin* FindKeptLogin(const State& state, const Place& at, std::string_view target) {
    const std::vector<KeptLogin>& logins = StateOf(state, at).logins;
    const auto found = std::ranges::find(logins, target, &KeptLogin::target);
    return found == logins.end() ? nullptr : &*found;
}

KnownTarget AcceptedBy(const KeptLogin& login, const std::vector<AnnouncedPortal>& told) {
    KnownTarget target{login.target, {{login.address, login.port}, {}}, &login.login};
    const auto portal = std::ranges::find_if(told, [&](const AnnouncedPortal& announced) {
        return AreSame(announced.portal, target.at.portal);
    });
    if (portal != told.end()) {
        target.at.group = portal->group;
    }
    return target;
}

FoundTargets FindTargets(const Place& at, const State& state) {
    const InterfaceState& kept = StateOf(state, at);
    FoundTargets found;
    std::set<std::string> names;
    const std::vector<PortalAnswer> answers = AskAll(at, state);
    if (!answers.empty() && std::ranges::all_of(answers, [](const PortalAnswer& answer) {
            return answer.refusal.has_value();
        })) {
        throw IscsiFailure(*answers.front().refusal);
    }
    for (std::size_t portal = 0; portal < answers.size(); ++portal) {
        const Portal asked{kept.portals[portal].address, kept.portals[portal].port};
        for (const DiscoveredTarget& target : answers[portal].targets) {
            if (!IsTargetName(target.name)) {
                ++found.unusable;
            } else if (names.insert(target.name).second) {
                const KeptLogin* const accepted = FindKeptLogin(state, at, target.name);
                found.targets.push_back(accepted != nullptr
                                            ? AcceptedBy(*accepted, target.portals)
                                            : KnownTarget{target.name, ReachedAt(target, asked),
                                                          &kept.portals[portal].login});
            }
        }
    }
    for (const KeptLogin& login : kept.logins) {
        if (names.insert(login.target).second) {
            found.targets.push_back(AcceptedBy(login));
            found.targets.back().wasDiscovered = false;
        }
    }
    return found;
}

KnownTarget FindTarget(const Place& at, const State& state, const std::string& name) {
    FoundTargets found = FindTargets(at, state);
    for (KnownTarget& target : found.targets) {
        if (target.name == name) {
            return std::move(target);
        }
    }
    std::wstring details = L"target " + tavrolib::Quoted(name);
    if (found.unusable != 0) {
        details += L", targets with unusable names: " + std::to_wstring(found.unusable);
    }
    throw IscsiFailure(Refused(Status::UnknownIscsiTarget,
                               L"The initiator does not know this target.",
                               L"Run the command with \"-target -listall\" to see the targets, or "
                               L"add the portal of this target.",
                               details));
}

}  // namespace tavrolinux
