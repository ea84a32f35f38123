// Which targets an iSCSI function's initiator still reaches.
#include <map>
#include <string_view>

#include "simulator/model/iscsi_storage.h"

namespace tavrosim {
namespace {

// Where the initiator reaches targets: the first of its portals or, without one, the first session
// that there is. By the targets' names.
std::map<std::string_view, IscsiPortal> WaysTo(const Host& host, const IscsiStorage& storage) {
    const auto isKnown = [&](const IscsiPortal& portal) {
        return FindKnownPortal(storage, portal) != nullptr;
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

}  // namespace

void ForgetUnreached(const Host& host, IscsiStorage& storage,
                     const std::function<bool(const KnownTarget&)>& isConcerned) {
    const auto ways = WaysTo(host, storage);
    const auto isLost = [&](const KnownTarget& target) {
        return isConcerned(target) && target.discovery != StaticDiscovery &&
               FindKnownPortal(storage, target.portal) == nullptr;
    };
    for (KnownTarget& target : storage.targets) {
        const auto way = ways.find(target.name);
        if (way != ways.end() && isLost(target)) {
            target.portal = way->second;
        }
    }
    std::erase_if(storage.targets, [&](const KnownTarget& target) {
        return !ways.contains(target.name) && isLost(target);
    });
}

}  // namespace tavrosim
