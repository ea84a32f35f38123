// The targets that an iSCSI function's initiator has discovered, and logging in to them.
#include <limits>
#include <list>
#include <map>
#include <string_view>

#include "simulator/model/families.h"
#include "simulator/model/iscsi_storage.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::LoginOptions;
using tavroapi::OperationCode;
using tavroapi::TargetRecord;

// `found` and `session` may be null.
TargetRecord RecordOf(const KnownTarget& target, const NetworkTarget* found,
                      const IscsiSession* session) {
    const IscsiPortal& portal = session == nullptr ? target.portal : session->portal;
    TargetRecord record;
    record.name = target.name;
    record.alias = found == nullptr ? std::string() : found->alias;
    record.connectionState = session == nullptr ? "Not connected" : "Connected";
    record.portalAddress = portal.address;
    record.portalPort = portal.port;
    record.discovery = target.discovery;
    record.portalGroup = found == nullptr ? std::string() : found->portalGroup;
    return record;
}

enum class Wanted { All, Active };

template <Wanted Which>
Outcome ListTargets(const Viewed<IscsiPart>& at, std::list<TargetRecord>& targets) {
    const IscsiStorage& storage = at.part.storage;
    // Both can be long: each is gone through once.
    std::map<std::string_view, const NetworkTarget*> network;
    for (const NetworkTarget& target : at.host.iscsiTargets) {
        network.try_emplace(target.name, &target);
    }
    std::map<std::string_view, const IscsiSession*> sessions;
    for (const IscsiSession& session : storage.sessions) {
        sessions.try_emplace(session.target, &session);
    }
    const auto find = [](const auto& elements, const std::string& name) {
        const auto found = elements.find(name);
        return found == elements.end() ? nullptr : found->second;
    };
    targets.clear();
    for (const KnownTarget& target : storage.targets) {
        const IscsiSession* const session = find(sessions, target.name);
        if (Which == Wanted::All || session != nullptr) {
            targets.push_back(RecordOf(target, find(network, target.name), session));
        }
    }
    return Done();
}

Outcome ReadTarget(const Viewed<IscsiPart>& at, const std::string& name, TargetRecord& record) {
    const KnownTarget* const target = FindKnownTarget(at.part.storage, name);
    if (target == nullptr) {
        return UnknownTarget(name);
    }
    record =
        RecordOf(*target, FindNetworkTarget(at.host, name), FindSessionWith(at.part.storage, name));
    return Done();
}

Outcome RemoveTarget(const Edited<IscsiPart>& at, const std::string& name) {
    IscsiStorage& storage = at.part.storage;
    if (FindKnownTarget(storage, name) == nullptr) {
        return UnknownTarget(name);
    }
    if (FindSessionWith(storage, name) != nullptr) {
        return Refused(Status::InUse, L"There is a session with the target.",
                       L"Log out of the target first.", L"target " + Quoted(name));
    }
    std::erase_if(storage.targets, [&](const KnownTarget& target) { return target.name == name; });
    return Done();
}

Outcome LoginRefused(ErrorText message, ErrorText action, std::wstring details = {}) {
    return Refused(Status::LoginRefused, message, action, std::move(details));
}

// Whether the names and secrets are those that the target wants.
Outcome Authenticate(const NetworkTarget& target, const LoginOptions& login) {
    if (!target.chap) {
        return Done();
    }
    const TargetChap& chap = *target.chap;
    const bool isMutual = login.authentication == "Mutual CHAP";
    if (!isMutual && login.authentication != "One-way CHAP") {
        return LoginRefused(L"The target wants CHAP authentication.",
                            L"Log in with the option \"-onewaychap\" or \"-mutualchap\".");
    }
    if (login.targetChapName != chap.targetName) {
        return LoginRefused(L"The target does not know this target CHAP name.",
                            L"Enter the name that is set up at the target.",
                            L"target CHAP name " + Quoted(login.targetChapName));
    }
    if (login.targetSecret != chap.targetSecret) {
        return LoginRefused(L"The target CHAP secret does not match.",
                            L"Enter the secret that is set up at the target.");
    }
    if (!isMutual) {
        return chap.initiatorName ? LoginRefused(L"The target wants mutual CHAP authentication.",
                                                 L"Log in with the option \"-mutualchap\".")
                                  : Done();
    }
    if (!chap.initiatorName) {
        return LoginRefused(L"The target does not offer mutual CHAP authentication.",
                            L"Log in with the option \"-onewaychap\".");
    }
    if (login.initiatorChapName != *chap.initiatorName) {
        return LoginRefused(L"The target does not know this initiator CHAP name.",
                            L"Enter the name that is set up at the target.",
                            L"initiator CHAP name " + Quoted(login.initiatorChapName));
    }
    if (login.initiatorSecret != chap.initiatorSecret) {
        return LoginRefused(L"The initiator CHAP secret does not match.",
                            L"Enter the secret that is set up at the target.");
    }
    return Done();
}

// An initiator may have several sessions with a target when all of their logins say so.
Outcome CheckFurtherSession(const Host& host, const IscsiStorage& storage,
                            const IscsiSession& wanted) {
    const IscsiSession* other = nullptr;
    for (const IscsiSession& open : storage.sessions) {
        if (open.target == wanted.target &&
            InitiatorNameOf(open, host) == InitiatorNameOf(wanted, host) &&
            (open.multipath == "No" || wanted.multipath == "No")) {
            other = &open;
            if (open.portal == wanted.portal) {
                break;
            }
        }
    }
    if (other == nullptr) {
        return Done();
    }
    std::wstring details = L"target " + Quoted(other->target) + L", " +
                           PortalDetails(other->portal) + L", session " +
                           std::to_wstring(other->id);
    constexpr ErrorText Action =
        L"Log out of the target first. For several sessions, log in without the option \"-mp\".";
    return other->portal == wanted.portal
               ? Refused(Status::SessionExists,
                         L"There is a session with the target through this portal already.", Action,
                         std::move(details))
               : LoginRefused(L"There is a session with the target through another portal already.",
                              Action, std::move(details));
}

// Blanks around a name do not count, neither here nor where the program looks a name up.
std::string WithoutOuterBlanks(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The session that a login asks for, still without a number.
IscsiSession SessionFor(const tavroapi::TargetLoginRecord& record, const Host& host) {
    const LoginOptions& login = record.login;
    IscsiSession session;
    session.target = WithoutOuterBlanks(record.targetName);
    session.portal = {record.portalAddress, record.portalPort};
    session.initiatorName = host.initiator.name;
    session.authentication = TextOr(login.authentication, session.authentication);
    if (session.authentication != "None") {
        session.targetChapName = login.targetChapName;
        session.initiatorChapName = login.initiatorChapName;
    }
    session.headerDigest = TextOr(login.headerDigest, session.headerDigest);
    session.dataDigest = TextOr(login.dataDigest, session.dataDigest);
    session.multipath = TextOr(login.multipath, session.multipath);
    session.immediateData = record.text2;
    return session;
}

// The highest number that a session has had. A host file may have sessions above its last one.
std::uint32_t LastSessionId(const IscsiStorage& storage) {
    std::uint32_t last = storage.lastSessionId;
    for (const IscsiSession& session : storage.sessions) {
        last = std::max(last, session.id);
    }
    return last;
}

Outcome LogInToTarget(const Edited<IscsiPart>& at, const tavroapi::TargetLoginRecord& record) {
    IscsiStorage& storage = at.part.storage;
    IscsiSession wanted = SessionFor(record, at.host);
    const std::string& name = wanted.target;
    const IscsiPortal& portal = wanted.portal;
    const bool isKnown = FindKnownTarget(storage, name) != nullptr;
    if (!isKnown && record.confirmedNew == 0) {
        return UnknownTarget(name);
    }
    const NetworkTarget* const target = FindNetworkTarget(at.host, name);
    if (target == nullptr || std::ranges::find(target->portals, portal) == target->portals.end()) {
        return Refused(Status::TargetUnreachable, L"The target does not reply at this portal.",
                       L"Check the target name, the address and the port number.",
                       L"target " + Quoted(name) + L", " + PortalDetails(portal));
    }
    Outcome authenticated = Authenticate(*target, record.login);
    if (!authenticated.IsDone()) {
        return authenticated;
    }
    Outcome further = CheckFurtherSession(at.host, storage, wanted);
    if (!further.IsDone()) {
        return further;
    }
    const std::uint32_t last = LastSessionId(storage);
    if (last == std::numeric_limits<std::uint32_t>::max()) {
        return LoginRefused(L"The host file has no session number left.",
                            L"Correct the file, or move it away to start from the built-in host.",
                            L"session " + std::to_wstring(last));
    }
    if (!isKnown) {
        storage.targets.push_back({name, portal, StaticDiscovery});
    }
    wanted.id = storage.lastSessionId = last + 1;
    storage.sessions.push_back(std::move(wanted));
    if (!IsCaptured(at.host)) {
        ++storage.statistics.logins;
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> IscsiTargetOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ListTargets, IscsiPart, ListTargets<Wanted::All>>(),
        Reads<OperationCode::ListActiveTargets, IscsiPart, ListTargets<Wanted::Active>>(),
        Reads<OperationCode::ReadTarget, IscsiPart, ReadTarget>(),
        Changes<OperationCode::LogInToTarget, IscsiPart, LogInToTarget>(),
        Changes<OperationCode::RemoveTarget, IscsiPart, RemoveTarget>()};
    return Rows;
}

}  // namespace tavrosim
