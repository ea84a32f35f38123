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
namespace position = tavroapi::iscsi_session;

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
    return Refused(
        Status::UnknownSession,
        isAny ? L"There is no session with the target " + Quoted(target) + L"."
              : L"The target " + Quoted(target) + L" has no session " + Quoted(idText) + L".",
        L"Run the command with \"-target -listactive\" to see the targets that have sessions.");
}

Outcome ReadSession(const Viewed<IscsiPart>& at, const SessionRecord& wanted,
                    SessionRecord& record) {
    const std::string name = wanted.texts[position::TargetName];
    const std::string id = wanted.texts[position::Id];
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
    record.texts[position::TargetName] = session->target;
    record.texts[position::Id] = number;
    record.texts[position::Status] = "Logged in";
    record.texts[position::Type] = "Normal";
    record.texts[position::InitiatorPart] =
        "80000000" + std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number;
    record.texts[position::TargetHandle] = number;
    record.texts[position::TargetAlias] = target == nullptr ? std::string() : target->alias;
    record.texts[position::PortalGroup] = target == nullptr ? std::string() : target->portalGroup;
    record.texts[position::TargetAddress] = session->portal.address;
    record.texts[position::TargetPort] = session->portal.port;
    record.texts[position::InitiatorName] = at.host.initiator.name;
    record.texts[position::InitiatorAddress] =
        session->portal.address.find(':') == std::string::npos ? tcpIp.address : tcpIp.addressIPv6;
    record.texts[position::InitiatorPort] = std::to_string(49151 + session->id);
    record.texts[position::ConnectionCount] = "1";
    record.texts[position::ConnectionId] = "0";
    record.texts[position::ConnectionStatus] = "Connected";
    record.texts[position::Authentication] = session->authentication;
    record.texts[position::TargetChapName] = session->targetChapName;
    record.texts[position::InitiatorChapName] = session->initiatorChapName;
    record.texts[position::HeaderDigest] = session->headerDigest;
    record.texts[position::DataDigest] = session->dataDigest;
    record.texts[position::Multipath] = session->multipath;
    record.texts[position::MaxConnections] = parameters.maxConnections;
    record.texts[position::InitialR2T] = parameters.initialR2T;
    record.texts[position::ImmediateData] = parameters.immediateData;
    record.texts[position::MaxBurstLength] = parameters.maxBurstLength;
    record.texts[position::FirstBurstLength] = parameters.firstBurstLength;
    record.texts[position::TimeToWait] = parameters.timeToWait;
    record.texts[position::TimeToRetain] = parameters.timeToRetain;
    record.texts[position::MaxOutstandingR2T] = parameters.maxOutstandingR2T;
    record.texts[position::DataPduInOrder] = parameters.dataPduInOrder;
    record.texts[position::DataSequenceInOrder] = parameters.dataSequenceInOrder;
    record.texts[position::ErrorRecoveryLevel] = parameters.errorRecoveryLevel;
    record.texts[position::MaxReceiveLength] = parameters.maxReceiveLength;
    record.texts[position::MaxTransmitLength] = parameters.maxTransmitLength;
    record.texts[position::InitiatorMarker] = "No";
    record.texts[position::TargetMarker] = "No";
    record.texts[position::VlanId] = tcpIp.vlanId;
    record.texts[position::MaxFrameSize] = tcpIp.maxFrameSize;
    record.texts[position::LunCount] = std::to_string(target == nullptr ? 0 : target->luns.size());
    record.texts[position::Discovery] = known->discovery;
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
        storage.statistics.logouts +=
            std::erase_if(storage.sessions, [&](const IscsiSession& session) {
                return session.target == record.targetName && (id == 0 || session.id == id);
            });
    }
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

constexpr OperationModel Rows[] = {
    Reads<OperationCode::ReadSession, IscsiPart, ReadSession>(),
    Changes<OperationCode::LogOutOfTarget, IscsiPart, LogOutOfTarget>(),
    Reads<OperationCode::ListLuns, IscsiPart, ListLuns>()};

}  // namespace

std::span<const OperationModel> IscsiSessionOperations() {
    return Rows;
}

}  // namespace tavrosim
