// The portals that an iSCSI function's initiator knows. Adding one discovers the targets behind it.
#include <list>
#include <map>
#include <set>
#include <string_view>

#include "simulator/model/families.h"
#include "simulator/model/iscsi_storage.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;

bool Answers(const NetworkTarget& target, const IscsiPortal& portal) {
    return std::ranges::find(target.portals, portal) != target.portals.end();
}

Outcome ListPortals(const Viewed<IscsiPart>& at, std::list<tavroapi::PortalEntry>& portals) {
    portals.clear();
    for (const IscsiPortal& portal : at.part.storage.portals) {
        portals.push_back({portal.address, portal.port});
    }
    return Done();
}

// A portal that is there already is asked for its targets once more. One at which nothing answers
// is kept all the same.
Outcome AddPortal(const Edited<IscsiPart>& at, const tavroapi::PortalRecord& record) {
    IscsiStorage& storage = at.part.storage;
    const IscsiPortal portal{record.address, record.port};
    if (std::ranges::find(storage.portals, portal) == storage.portals.end()) {
        storage.portals.push_back(portal);
    }
    std::set<std::string> known;
    for (const KnownTarget& target : storage.targets) {
        known.insert(target.name);
    }
    for (const NetworkTarget& target : at.host.iscsiTargets) {
        if (Answers(target, portal) && known.insert(target.name).second) {
            storage.targets.push_back({target.name, portal, SendTargetsDiscovery});
        }
    }
    return Done();
}

// Where else the initiator reaches targets: the first of its other portals or, without one, the
// first session that there is. By the targets' names.
std::map<std::string_view, IscsiPortal> OtherWays(const Host& host, const IscsiStorage& storage) {
    const auto isKnown = [&](const IscsiPortal& portal) {
        return std::ranges::find(storage.portals, portal) != storage.portals.end();
    };
    std::map<std::string_view, IscsiPortal> ways;
    for (const NetworkTarget& target : host.iscsiTargets) {
        const auto way = std::ranges::find_if(target.portals, isKnown);
        if (way != target.portals.end()) {
            ways.try_emplace(target.name, *way);
        }
    }
    for (const IscsiSession& session : storage.sessions) {
        ways.try_emplace(session.target, session.portal);
    }
    return ways;
}

// A target that was discovered at the portal, which is not known any more, is forgotten unless it
// is reached in another way. One that a user named is kept.
void ForgetTargetsOf(const IscsiPortal& portal, const Host& host, IscsiStorage& storage) {
    const auto ways = OtherWays(host, storage);
    std::erase_if(storage.targets, [&](KnownTarget& target) {
        if (target.portal != portal || target.discovery == StaticDiscovery) {
            return false;
        }
        const auto way = ways.find(target.name);
        if (way == ways.end()) {
            return true;
        }
        target.portal = way->second;
        return false;
    });
}

Outcome RemovePortal(const Edited<IscsiPart>& at, const tavroapi::PortalRecord& record) {
    IscsiStorage& storage = at.part.storage;
    const IscsiPortal portal{record.address, record.port};
    if (std::ranges::find(storage.portals, portal) == storage.portals.end()) {
        return Refused(Status::UnknownPortal, L"The initiator does not know this portal.",
                       L"Run the command with \"-portal -listall\" to see the portals.",
                       PortalDetails(portal));
    }
    const IscsiSession* const session = FindWhere(
        storage.sessions, [&](const IscsiSession& open) { return open.portal == portal; });
    if (session != nullptr) {
        return Refused(Status::InUse, L"The portal is in use by a session.",
                       L"Log out of the target first.", L"target " + Quoted(session->target));
    }
    std::erase(storage.portals, portal);
    ForgetTargetsOf(portal, at.host, storage);
    return Done();
}

}  // namespace

std::span<const OperationModel> IscsiPortalOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ListPortals, IscsiPart, ListPortals>(),
        Changes<OperationCode::AddPortal, IscsiPart, AddPortal>(),
        Changes<OperationCode::RemovePortal, IscsiPart, RemovePortal>()};
    return Rows;
}

}  // namespace tavrosim
