// The sessions of an iSCSI function's initiator, and the LUNs behind its targets.
#include <charconv>
#include <list>
#include <optional>
#include <vector>

#include "simulator/model/families.h"
#include "simulator/model/iscsi_parameters.h"
#include "simulator/model/iscsi_storage.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::LunRecord;
using tavroapi::OperationCode;
using tavroapi::SessionRecord;

// A session's number as users write it; none for a text that is no number.
std::optional<std::uint32_t> SessionIdFrom(const std::string& text) {
    std::uint32_t id = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, id);
    return error == std::errc() && stop == end ? std::optional(id) : std::nullopt;
}

// The session of that number with the target; 0 stands for the first one there is.
const IscsiSession* FindSession(const IscsiStorage& storage, const std::string& target,
                                const std::string& idText) {
    const auto id = SessionIdFrom(idText);
    return !id ? nullptr : FindWhere(storage.sessions, [&](const IscsiSession& session) {
        return session.target == target && (*id == 0 || session.id == *id);
    });
}

Outcome UnknownSession(const std::string& target, const std::string& idText) {
    const bool isAny = SessionIdFrom(idText) == 0U;
    return RefusedStorage(
        StorageStatus::UnknownSession,
        isAny ? L"There is no session with the target " + Quoted(target) + L"."
              : L"The target " + Quoted(target) + L" has no session " + Quoted(idText) + L".",
        L"Run the command with \"-target -listactive\" to see the targets that have sessions.");
}

Outcome ReadSession(const Host& host, const std::string& request, const SessionRecord& wanted,
                    SessionRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const std::string name = wanted.texts[tavroapi::SessionTargetNamePosition];
    const std::string id = wanted.texts[tavroapi::SessionIdPosition];
    const KnownTarget* const known = FindKnownTarget(function.Storage(), name);
    if (known == nullptr) {
        return UnknownTarget(name);
    }
    const IscsiSession* const session = FindSession(function.Storage(), name, id);
    if (session == nullptr) {
        return UnknownSession(name, id);
    }
    const NetworkTarget* const target = FindNetworkTarget(host, name);
    const std::string number = std::to_string(session->id);
    const IscsiParameters& parameters = DefaultParameters;
    const TcpIp& tcpIp = function.Part().tcpIp;
    record.texts = {
        session->target,
        number,
        "Logged in",
        "Normal",
        "80000000" + std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number,
        number,
        target == nullptr ? std::string() : target->alias,
        target == nullptr ? std::string() : target->portalGroup,
        session->portal.address,
        session->portal.port,
        host.initiator.name,
        session->portal.address.find(':') == std::string::npos ? tcpIp.address : tcpIp.addressIPv6,
        std::to_string(49151 + session->id),
        "1",
        "0",
        "Connected",
        session->authentication,
        session->targetChapName,
        session->initiatorChapName,
        session->headerDigest,
        session->dataDigest,
        session->multipath,
        parameters.maxConnections,
        parameters.initialR2T,
        parameters.immediateData,
        parameters.maxBurstLength,
        parameters.firstBurstLength,
        parameters.timeToWait,
        parameters.timeToRetain,
        parameters.maxOutstandingR2T,
        parameters.dataPduInOrder,
        parameters.dataSequenceInOrder,
        parameters.errorRecoveryLevel,
        parameters.maxReceiveLength,
        parameters.maxTransmitLength,
        "No",
        "No",
        tcpIp.vlanId,
        tcpIp.maxFrameSize,
        std::to_string(target == nullptr ? 0 : target->luns.size()),
        known->discovery,
    };
    return Done();
}

// Every number must be one of the target's sessions; otherwise none is ended.
Outcome LogOutOfTarget(Host& host, const std::string& request,
                       const tavroapi::LogoutRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    IscsiStorage& storage = function.Storage();
    if (FindKnownTarget(storage, record.targetName) == nullptr) {
        return UnknownTarget(record.targetName);
    }
    for (const std::string& id : record.sessionIds) {
        if (FindSession(storage, record.targetName, id) == nullptr) {
            return UnknownSession(record.targetName, id);
        }
    }
    for (const std::string& idText : record.sessionIds) {
        const std::uint32_t id = SessionIdFrom(idText).value_or(0);
        storage.statistics.logouts +=
            std::erase_if(storage.sessions, [&](const IscsiSession& session) {
                return session.target == record.targetName && (id == 0 || session.id == id);
            });
    }
    return Done();
}

Outcome ListLuns(const Host& host, const std::string& request, const std::string& name,
                 std::list<LunRecord>& luns) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    if (FindKnownTarget(function.Storage(), name) == nullptr) {
        return UnknownTarget(name);
    }
    luns.clear();
    const NetworkTarget* const target = FindNetworkTarget(host, name);
    if (target == nullptr) {
        return Done();
    }
    const bool isConnected = FindSessionWith(function.Storage(), name) != nullptr;
    for (const NetworkLun& lun : target->luns) {
        luns.push_back(
            {{std::to_string(lun.number), lun.vendor, lun.product, lun.capacity, lun.blockSize,
              lun.serialNumber, isConnected ? "Connected" : "Not connected"}});
    }
    return Done();
}

constexpr OperationModel Rows[] = {Reads<OperationCode::ReadSession, ReadSession>(),
                                   Changes<OperationCode::LogOutOfTarget, LogOutOfTarget>(),
                                   Reads<OperationCode::ListLuns, ListLuns>()};

}  // namespace

std::span<const OperationModel> IscsiSessionOperations() {
    return Rows;
}

}  // namespace tavrosim
