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

Outcome ListPortals(const Host& host, const std::string& request,
                    std::list<tavroapi::PortalEntry>& portals) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    portals.clear();
    for (const IscsiPortal& portal : function.Storage().portals) {
        portals.push_back({portal.address, portal.port});
    }
    return Done();
}

// A portal that is there already is asked for its targets once more. One at which nothing answers
// is kept all the same.
Outcome AddPortal(Host& host, const std::string& request, const tavroapi::PortalRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    IscsiStorage& storage = function.Storage();
    const IscsiPortal portal{record.address, record.port};
    if (std::ranges::find(storage.portals, portal) == storage.portals.end()) {
        storage.portals.push_back(portal);
    }
    std::set<std::string> known;
    for (const KnownTarget& target : storage.targets) {
        known.insert(target.name);
    }
    for (const NetworkTarget& target : host.iscsiTargets) {
        if (Answers(target, portal) && known.insert(target.name).second) {
            storage.targets.push_back({target.name, portal, "SendTargets"});
        }
    }
    return Done();
}

Outcome RemovePortal(Host& host, const std::string& request, const tavroapi::PortalRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    IscsiStorage& storage = function.Storage();
    const IscsiPortal portal{record.address, record.port};
    if (std::ranges::find(storage.portals, portal) == storage.portals.end()) {
        return RefusedStorage(StorageStatus::UnknownPortal,
                              L"The initiator knows no portal " + Quoted(record.address) +
                                  L" with the port number " + Quoted(record.port) + L".",
                              L"Run the command with \"-portal -listall\" to see the portals.");
    }
    const IscsiSession* const session = FindWhere(
        storage.sessions, [&](const IscsiSession& open) { return open.portal == portal; });
    if (session != nullptr) {
        return RefusedStorage(
            StorageStatus::InUse,
            L"A session with the target " + Quoted(session->target) + L" uses the portal.",
            L"Log out of the target first.");
    }
    std::erase(storage.portals, portal);
    std::set<std::string> connected;
    for (const IscsiSession& open : storage.sessions) {
        connected.insert(open.target);
    }
    std::erase_if(storage.targets, [&](const KnownTarget& target) {
        return target.portal == portal && !connected.contains(target.name);
    });
    return Done();
}

constexpr OperationModel Rows[] = {Reads<OperationCode::ListPortals, ListPortals>(),
                                   Changes<OperationCode::AddPortal, AddPortal>(),
                                   Changes<OperationCode::RemovePortal, RemovePortal>()};

}  // namespace

std::span<const OperationModel> IscsiPortalOperations() {
    return Rows;
}

}  // namespace tavrosim
