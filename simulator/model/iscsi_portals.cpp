// The portals that an iSCSI function's initiator knows. Adding one discovers the targets behind it.
#include <list>
#include <set>

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
    for (const KnownPortal& portal : at.part.storage.portals) {
        portals.push_back({portal.address, portal.port});
    }
    return Done();
}

// A portal that is there already is asked for its targets once more. One at which nothing answers
// is kept all the same. How to log in at it is kept with it, as it was last said.
Outcome AddPortal(const Edited<IscsiPart>& at, const tavroapi::PortalRecord& record) {
    IscsiStorage& storage = at.part.storage;
    const IscsiPortal portal{record.address, record.port};
    if (KnownPortal* const known = FindKnownPortal(storage, portal)) {
        known->login = LoginOf(record.login);
    } else {
        storage.portals.push_back({portal, LoginOf(record.login)});
    }
    std::set<std::string> names;
    for (const KnownTarget& target : storage.targets) {
        names.insert(target.name);
    }
    for (const NetworkTarget& target : at.host.iscsiTargets) {
        if (Answers(target, portal) && names.insert(target.name).second) {
            storage.targets.push_back({target.name, portal, SendTargetsDiscovery});
        }
    }
    return Done();
}

Outcome RemovePortal(const Edited<IscsiPart>& at, const tavroapi::PortalRecord& record) {
    IscsiStorage& storage = at.part.storage;
    const IscsiPortal portal{record.address, record.port};
    if (FindKnownPortal(storage, portal) == nullptr) {
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
    std::erase_if(storage.portals, [&](const KnownPortal& known) { return known == portal; });
    ForgetUnreached(at.host, storage,
                    [&](const KnownTarget& target) { return target.portal == portal; });
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
