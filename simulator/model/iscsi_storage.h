#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/host/host.h"
#include "simulator/host/lookup.h"
#include "simulator/model/model.h"
#include "simulator/text.h"

/// What the model functions of iSCSI portals, targets and sessions share.
namespace tavrosim {

/// The statuses of refusals that concern iSCSI storage.
enum class StorageStatus : std::uint32_t {
    UnknownPortal = 36897,
    UnknownTarget = 36898,
    TargetUnreachable = 36899,
    LoginRefused = 36900,
    UnknownSession = 36901,
    InUse = 36902,
    NoStatistics = 36903,
};

inline Outcome RefusedStorage(StorageStatus status, std::wstring message, std::wstring action) {
    return Refused(static_cast<std::uint32_t>(status), std::move(message), std::move(action));
}

/// A narrow text in quotation marks, for messages.
inline std::wstring Quoted(std::string_view text) {
    return L"\"" + WideFromUtf8(Utf8FromBytes(text)) + L"\"";
}

/// The iSCSI function with that MAC, or the refusal of the request.
template <class AnyHost>
struct IscsiRequest {
    explicit IscsiRequest(AnyHost& host, const std::string& request)
        : located(FindIscsiFunction(host, request)),
          refusal(located ? Done() : UnknownIdentifier(request, L"iSCSI")) {}

    bool IsRefused() const { return !refusal.IsDone(); }
    auto& Part() const { return *located.function->iscsi; }
    auto& Storage() const { return Part().storage; }

    Located<AnyHost> located;
    Outcome refusal;
};

/// The first element for which `isWanted` is true; null when there is none.
template <class Elements, class Predicate>
auto FindWhere(Elements& elements, Predicate isWanted) {
    const auto found = std::find_if(elements.begin(), elements.end(), isWanted);
    return found == elements.end() ? nullptr : &*found;
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

inline Outcome UnknownTarget(const std::string& name) {
    return RefusedStorage(StorageStatus::UnknownTarget,
                          L"The initiator knows no target " + Quoted(name) + L".",
                          L"Run the command with \"-target -listall\" to see the targets. Add the "
                          L"portal at which the target answers if it is missing.");
}

}  // namespace tavrosim
