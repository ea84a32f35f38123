#pragma once

#include <algorithm>
#include <functional>
#include <string>

#include "simulator/host/host.h"
#include "simulator/host/lookup.h"
#include "simulator/model/model.h"

// What the model functions of iSCSI portals, targets and sessions share.
namespace tavrosim {

// How a target came to be known: through a portal, or by its name.
inline constexpr const char* SendTargetsDiscovery = "SendTargets";
inline constexpr const char* StaticDiscovery = "Static";

// The first element for which `isWanted` is true; null when there is none.
template <class Elements, class Predicate>
auto FindWhere(Elements& elements, Predicate isWanted) {
    const auto found = std::find_if(elements.begin(), elements.end(), isWanted);
    return found == elements.end() ? nullptr : &*found;
}

template <class AnyStorage>
auto FindKnownPortal(AnyStorage& storage, const IscsiPortal& portal) {
    return FindWhere(storage.portals, [&](const IscsiPortal& known) { return known == portal; });
}

template <class AnyStorage>
auto FindKnownTarget(AnyStorage& storage, const std::string& name) {
    return FindWhere(storage.targets,
                     [&](const KnownTarget& target) { return target.name == name; });
}

inline const NetworkTarget* FindNetworkTarget(const Host& host, const std::string& name) {
    return FindWhere(host.iscsiTargets,
                     [&](const NetworkTarget& target) { return target.name == name; });
}

inline const IscsiSession* FindSessionWith(const IscsiStorage& storage, const std::string& target) {
    return FindWhere(storage.sessions,
                     [&](const IscsiSession& session) { return session.target == target; });
}

// A portal as details of an error name it.
inline std::wstring PortalDetails(const IscsiPortal& portal) {
    return L"address " + Quoted(portal.address) + L", port number " + Quoted(portal.port);
}

// The name that the initiator had when it opened the session.
inline std::string InitiatorNameOf(const IscsiSession& session, const Host& host) {
    return TextOr(session.initiatorName, host.initiator.name);
}

// Of the targets that are concerned, those that were discovered at a portal which is not known any
// more tell another way in which they are reached from now on, or are forgotten when there is none.
// One that a user named stays as it is.
void ForgetUnreached(const Host& host, IscsiStorage& storage,
                     const std::function<bool(const KnownTarget&)>& isConcerned);

inline Outcome UnknownTarget(const std::string& name) {
    return Refused(Status::UnknownIscsiTarget, L"The initiator does not know this target.",
                   L"Run the command with \"-target -listall\" to see the targets, or add the "
                   L"portal of this target.",
                   L"target " + Quoted(name));
}

}  // namespace tavrosim
