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
namespace iscsi_session = tavroapi::iscsi_session;

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
    std::wstring details = L"target " + Quoted(target);
    if (!isAny) {
        details += L", session " + Quoted(idText);
    }
    return Refused(
        Status::UnknownSession,
        isAny ? ErrorText(L"There is no session with the target.")
              : ErrorText(L"The target has no session of this number."),
        L"Run the command with \"-target -listactive\" to see the targets that have sessions.",
        std::move(details));
}

Outcome ReadSession(const Viewed<IscsiPart>& at, const SessionRecord& wanted,
                    SessionRecord& record) {
    const std::string name = wanted.texts[iscsi_session::TargetName];
    const std::string id = wanted.texts[iscsi_session::Id];
    const KnownTarget* const known = FindKnownTarget(at.part.storage, name);
    if (known == nullptr) {
        return UnknownTarget(name);
    }
    const IscsiSession* const session = FindSession(at.part.storage, name, id);
    if (session == nullptr) {
        return UnknownSession(name, id);
    }
    const NetworkTarget* const target = FindNetworkTarget(at.host, name);
    const std::string number = std::to_string(session->id);
    const IscsiParameters& parameters = DefaultParameters;
    const TcpIp& tcpIp = at.part.tcpIp;
    record.texts[iscsi_session::TargetName] = session->target;
    record.texts[iscsi_session::Id] = number;
    record.texts[iscsi_session::Status] = "Logged in";
    record.texts[iscsi_session::Type] = "Normal";
    record.texts[iscsi_session::InitiatorPart] =
        "80000000" + std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number;
    record.texts[iscsi_session::TargetHandle] = number;
    record.texts[iscsi_session::TargetAlias] = target == nullptr ? std::string() : target->alias;
    record.texts[iscsi_session::PortalGroup] =
        target == nullptr ? std::string() : target->portalGroup;
    record.texts[iscsi_session::TargetAddress] = session->portal.address;
    record.texts[iscsi_session::TargetPort] = session->portal.port;
    record.texts[iscsi_session::InitiatorName] = InitiatorNameOf(*session, at.host);
    record.texts[iscsi_session::InitiatorAddress] =
        session->portal.address.find(':') == std::string::npos ? tcpIp.address : tcpIp.addressIPv6;
    record.texts[iscsi_session::InitiatorPort] = std::to_string(49151 + session->id);
    record.texts[iscsi_session::ConnectionCount] = "1";
    record.texts[iscsi_session::ConnectionId] = "0";
    record.texts[iscsi_session::ConnectionStatus] = "Connected";
    record.texts[iscsi_session::Authentication] =
        TextOr(session->authentication, Login().authentication);
    record.texts[iscsi_session::TargetChapName] = session->targetChapName;
    record.texts[iscsi_session::InitiatorChapName] = session->initiatorChapName;
    record.texts[iscsi_session::HeaderDigest] =
        TextOr(session->headerDigest, parameters.headerDigest);
    record.texts[iscsi_session::DataDigest] = TextOr(session->dataDigest, parameters.dataDigest);
    record.texts[iscsi_session::Multipath] = TextOr(session->multipath, Login().multipath);
    record.texts[iscsi_session::MaxConnections] = parameters.maxConnections;
    record.texts[iscsi_session::InitialR2T] = parameters.initialR2T;
    record.texts[iscsi_session::ImmediateData] =
        TextOr(session->immediateData, parameters.immediateData);
    record.texts[iscsi_session::MaxBurstLength] = parameters.maxBurstLength;
    record.texts[iscsi_session::FirstBurstLength] = parameters.firstBurstLength;
    record.texts[iscsi_session::TimeToWait] = parameters.timeToWait;
    record.texts[iscsi_session::TimeToRetain] = parameters.timeToRetain;
    record.texts[iscsi_session::MaxOutstandingR2T] = parameters.maxOutstandingR2T;
    record.texts[iscsi_session::DataPduInOrder] = parameters.dataPduInOrder;
    record.texts[iscsi_session::DataSequenceInOrder] = parameters.dataSequenceInOrder;
    record.texts[iscsi_session::ErrorRecoveryLevel] = parameters.errorRecoveryLevel;
    record.texts[iscsi_session::MaxReceiveLength] = parameters.maxReceiveLength;
    record.texts[iscsi_session::MaxTransmitLength] = parameters.maxTransmitLength;
    record.texts[iscsi_session::InitiatorMarker] = "No";
    record.texts[iscsi_session::TargetMarker] = "No";
    record.texts[iscsi_session::VlanId] = tcpIp.vlanId;
    record.texts[iscsi_session::MaxFrameSize] = tcpIp.maxFrameSize;
    record.texts[iscsi_session::LunCount] =
        std::to_string(target == nullptr ? 0 : target->luns.size());
    record.texts[iscsi_session::Discovery] = known->discovery;
    return Done();
}

// Every number must be one of the target's sessions; otherwise none is ended.
Outcome LogOutOfTarget(const Edited<IscsiPart>& at, const tavroapi::LogoutRecord& record) {
    IscsiStorage& storage = at.part.storage;
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
        const std::size_t ended = std::erase_if(storage.sessions, [&](const IscsiSession& session) {
            return session.target == record.targetName && (id == 0 || session.id == id);
        });
        if (!IsCaptured(at.host)) {
            storage.statistics.logouts += ended;
        }
    }
    ForgetUnreached(at.host, storage,
                    [&](const KnownTarget& target) { return target.name == record.targetName; });
    return Done();
}

Outcome ListLuns(const Viewed<IscsiPart>& at, const std::string& name, std::list<LunRecord>& luns) {
    if (FindKnownTarget(at.part.storage, name) == nullptr) {
        return UnknownTarget(name);
    }
    luns.clear();
    const NetworkTarget* const target = FindNetworkTarget(at.host, name);
    if (target == nullptr) {
        return Done();
    }
    const bool isConnected = FindSessionWith(at.part.storage, name) != nullptr;
    for (const NetworkLun& lun : target->luns) {
        luns.push_back(
            {{std::to_string(lun.number), lun.vendor, lun.product, lun.capacity, lun.blockSize,
              lun.serialNumber, isConnected ? "Connected" : "Not connected"}});
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> IscsiSessionOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadSession, IscsiPart, ReadSession>(),
        Changes<OperationCode::LogOutOfTarget, IscsiPart, LogOutOfTarget>(),
        Reads<OperationCode::ListLuns, IscsiPart, ListLuns>()};
    return Rows;
}

}  // namespace tavrosim
