#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "tavroapi/iscsi_records.h"
#include "tavroapi/operations.h"

// What an iSCSI port's initiator knows and does: portals, targets, sessions, LUNs and what the port
// tells of itself.
namespace tavroapi {

// A portal that the initiator knows: its address and its TCP port in decimal.
struct PortalEntry {
    std::string address;
    std::string port;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"address", &PortalEntry::address}, Field{"port", &PortalEntry::port});
    }
};

// A portal to add or to remove, and how to log in to it.
struct PortalRecord {
    std::string address;
    std::string port;
    LoginOptions login;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"address", &PortalRecord::address}, Field{"port", &PortalRecord::port},
                     Field{"login", &PortalRecord::login});
    }
};

// A target: its iSCSI qualified name, the portal through which it is reached, and what is known of
// it as a text to show.
struct TargetRecord {
    std::string name;
    std::string alias;
    std::string connectionState;
    std::string portalAddress;
    std::string portalPort;
    std::string discovery;
    std::string portalGroup;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"name", &TargetRecord::name}, Field{"text2", &TargetRecord::alias},
                     Field{"text3", &TargetRecord::connectionState},
                     Field{"portalAddress", &TargetRecord::portalAddress},
                     Field{"portalPort", &TargetRecord::portalPort},
                     Field{"text6", &TargetRecord::discovery},
                     Field{"text7", &TargetRecord::portalGroup});
    }
};

// A target to log in to. `confirmedNew` is 1 when the target is in no list and the user wants it
// nevertheless. `text2` and `text4` are the library's own: "No" and empty, or what a configuration
// that is imported says of immediate data and of the target's alias.
//
// The members follow one another without gaps. So that the texts are aligned all the same, a record
// has to stand one byte in front of a text's boundary: see `PlacedTargetLogin`.
#pragma pack(push, 1)
struct TargetLoginRecord {
    std::uint8_t confirmedNew = 0;
    std::string text2;
    std::string targetName;
    std::string text4;
    std::string portalAddress;
    std::string portalPort;
    LoginOptions login;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"confirmedNew", &TargetLoginRecord::confirmedNew},
                     Field{"text2", &TargetLoginRecord::text2},
                     Field{"targetName", &TargetLoginRecord::targetName},
                     Field{"text4", &TargetLoginRecord::text4},
                     Field{"portalAddress", &TargetLoginRecord::portalAddress},
                     Field{"portalPort", &TargetLoginRecord::portalPort},
                     Field{"login", &TargetLoginRecord::login});
    }
};
#pragma pack(pop)

namespace detail {

inline constexpr std::size_t TextSize = sizeof(std::string);

}  // namespace detail

static_assert(sizeof(LoginOptions) == 8 * detail::TextSize);
static_assert(offsetof(TargetLoginRecord, confirmedNew) == 0);
static_assert(offsetof(TargetLoginRecord, text2) == 1);
static_assert(offsetof(TargetLoginRecord, targetName) == 1 + detail::TextSize);
static_assert(offsetof(TargetLoginRecord, text4) == 1 + 2 * detail::TextSize);
static_assert(offsetof(TargetLoginRecord, portalAddress) == 1 + 3 * detail::TextSize);
static_assert(offsetof(TargetLoginRecord, portalPort) == 1 + 4 * detail::TextSize);
static_assert(offsetof(TargetLoginRecord, login) == 1 + 5 * detail::TextSize);
static_assert(sizeof(TargetLoginRecord) == 1 + 13 * detail::TextSize);

// A login record at an address where its texts are aligned.
struct PlacedTargetLogin {
    alignas(std::string) std::array<std::byte, alignof(std::string) - 1> unused{};
    TargetLoginRecord record;
};

static_assert(offsetof(PlacedTargetLogin, record) + offsetof(TargetLoginRecord, text2) ==
              alignof(std::string));
static_assert(alignof(LoginOptions) == alignof(std::string));

// Sessions to log out of, by their numbers in decimal; the single number "0" means all of them.
struct LogoutRecord {
    std::string targetName;
    std::list<std::string> sessionIds;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"targetName", &LogoutRecord::targetName},
                     Field{"sessionIds", &LogoutRecord::sessionIds});
    }
};

// A session. The caller fills in the target's name and the session's number, the library the rest.
using SessionRecord = TextRecord<41>;

// The positions in `SessionRecord`.
namespace iscsi_session {
enum Position : std::size_t {
    TargetName,
    Id,
    Status,
    Type,
    InitiatorPart,
    TargetHandle,
    TargetAlias,
    PortalGroup,
    TargetAddress,
    TargetPort,
    InitiatorName,
    InitiatorAddress,
    InitiatorPort,
    ConnectionCount,
    ConnectionId,
    ConnectionStatus,
    Authentication,
    TargetChapName,
    InitiatorChapName,
    HeaderDigest,
    DataDigest,
    Multipath,
    MaxConnections,
    InitialR2T,
    ImmediateData,
    MaxBurstLength,
    FirstBurstLength,
    TimeToWait,
    TimeToRetain,
    MaxOutstandingR2T,
    DataPduInOrder,
    DataSequenceInOrder,
    ErrorRecoveryLevel,
    MaxReceiveLength,
    MaxTransmitLength,
    InitiatorMarker,
    TargetMarker,
    VlanId,
    MaxFrameSize,
    LunCount,
    Discovery,
};
}  // namespace iscsi_session

// A logical unit of a target.
using LunRecord = TextRecord<7>;

// The positions in `LunRecord`.
namespace iscsi_lun {
enum Position : std::size_t {
    Number,
    Vendor,
    Product,
    Capacity,
    BlockSize,
    SerialNumber,
    ConnectionState,
};
}  // namespace iscsi_lun

// What an iSCSI port tells of itself.
using IscsiPortRecord = TextRecord<22>;

// The positions in `IscsiPortRecord`. The driver is the name of the kernel driver that serves the
// port.
namespace iscsi_port {
enum Position : std::size_t {
    FunctionNumber,
    Driver,
    DriverVersion,
    Mac,
    ModelName,
    SerialNumber,
    LinkStatus,
    LinkSpeed,
    Dhcp,
    Address,
    SubnetMask,
    Gateway,
    Vlan,
    VlanId,
    VlanPriority,
    MaximumFrameSize,
    DhcpIPv6,
    AddressIPv6,
    PrefixLengthIPv6,
    GatewayIPv6,
    ActiveSessions,
    FirmwareVersion,
};
}  // namespace iscsi_port

// The default parameters of an iSCSI port, or its statistics.
using IscsiParameterRecord = TextRecord<14>;

// The positions in `IscsiParameterRecord` when it holds default parameters.
namespace iscsi_defaults {
enum Position : std::size_t {
    MaxConnections,
    InitialR2T,
    ImmediateData,
    MaxBurstLength,
    FirstBurstLength,
    TimeToWait,
    TimeToRetain,
    MaxOutstandingR2T,
    DataPduInOrder,
    DataSequenceInOrder,
    ErrorRecoveryLevel,
    MaxReceiveLength,
    HeaderDigest,
    DataDigest,
};
}  // namespace iscsi_defaults

// The positions in `IscsiParameterRecord` when it holds statistics.
namespace iscsi_statistics {
enum Position : std::size_t {
    BytesSent,
    BytesReceived,
    PdusSent,
    PdusReceived,
    ScsiCommands,
    ScsiResponses,
    ReadyToTransfer,
    TaskCommands,
    Logins,
    Logouts,
    NopsSent,
    NopsReceived,
    DigestErrors,
    ConnectionErrors,
};
}  // namespace iscsi_statistics

template <>
struct OperationRecords<OperationCode::ReadIscsiPort> : Exchanges<NoRecord, IscsiPortRecord> {};
template <>
struct OperationRecords<OperationCode::ReadIscsiDefaults>
    : Exchanges<NoRecord, IscsiParameterRecord> {};
template <>
struct OperationRecords<OperationCode::ReadIscsiStatistics>
    : Exchanges<NoRecord, IscsiParameterRecord> {};
template <>
struct OperationRecords<OperationCode::ListPortals> : Exchanges<NoRecord, std::list<PortalEntry>> {
};
template <>
struct OperationRecords<OperationCode::AddPortal> : Exchanges<PortalRecord, NoRecord> {};
template <>
struct OperationRecords<OperationCode::RemovePortal> : Exchanges<PortalRecord, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ListTargets> : Exchanges<NoRecord, std::list<TargetRecord>> {
};
template <>
struct OperationRecords<OperationCode::ListActiveTargets>
    : Exchanges<NoRecord, std::list<TargetRecord>> {};
template <>
struct OperationRecords<OperationCode::ReadTarget> : Exchanges<CharacterString, TargetRecord> {};
template <>
struct OperationRecords<OperationCode::LogInToTarget> : Exchanges<TargetLoginRecord, NoRecord> {};
template <>
struct OperationRecords<OperationCode::RemoveTarget> : Exchanges<CharacterString, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ReadSession> : Exchanges<SessionRecord, SessionRecord> {};
template <>
struct OperationRecords<OperationCode::LogOutOfTarget> : Exchanges<LogoutRecord, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ListLuns>
    : Exchanges<CharacterString, std::list<LunRecord>> {};

using IscsiStorageOperations = OperationList<
    OperationCode::ReadIscsiPort, OperationCode::ReadIscsiDefaults,
    OperationCode::ReadIscsiStatistics, OperationCode::ListPortals, OperationCode::AddPortal,
    OperationCode::RemovePortal, OperationCode::ListTargets, OperationCode::ListActiveTargets,
    OperationCode::ReadTarget, OperationCode::LogInToTarget, OperationCode::RemoveTarget,
    OperationCode::ReadSession, OperationCode::LogOutOfTarget, OperationCode::ListLuns>;

}  // namespace tavroapi
