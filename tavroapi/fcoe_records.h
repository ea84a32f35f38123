#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// What the library tells of a port's FCoE function.
using FcoePortRecord = TextRecord<28>;

// The positions in `FcoePortRecord`.
namespace fcoe_port {
enum Position : std::size_t {
    Title,
    NodeWwn,
    PortWwn,
    FabricName,
    ModelName,
    SerialNumber,
    DriverVersion,
    Driver,
    HardwareVersion,
    OptionRomVersion,
    FirmwareVersion,
    LinkState,
    PortType,
    Fcid,
    LinkSpeed,
    SupportedClasses,
    SupportedTypes,
    DiscoveredPorts,
    MaximumFrameSize,
    SupportedSpeeds,
    DeviceName,
    HostName,
    FpmaMac,
    FcfMac,
    FcfNodeWwn,
    FcfPortWwn,
    FcMap,
    FabricVlan,
};
}  // namespace fcoe_port

// The counters of a port's FCoE function, as decimal texts.
using FcoeStatisticsRecord = TextRecord<30>;

// The positions in `FcoeStatisticsRecord`.
namespace fcoe_statistics {
enum Position : std::size_t {
    SecondsSinceReset,
    TransmittedFrames,
    TransmittedWords,
    ReceivedFrames,
    ReceivedWords,
    LoopInitializations,
    NotOperationalSequences,
    ErrorFrames,
    DumpedFrames,
    LinkFailures,
    SynchronizationLosses,
    SignalLosses,
    ProtocolErrors,
    InvalidWords,
    InvalidCrcs,
    InputRequests,
    OutputRequests,
    ControlRequests,
    InputMegabytes,
    OutputMegabytes,
    FipSolicitations,
    FipAdvertisements,
    MissedFipAdvertisements,
    FabricLogins,
    RejectedFabricLogins,
    PortLogins,
    AbortedExchanges,
    TimedOutRequests,
    QueueFullConditions,
    VirtualLinkFailures,
};
}  // namespace fcoe_statistics

// One target that a port sees.
using FcoeTargetRecord = TextRecord<11>;

// The positions in `FcoeTargetRecord` whose meaning is known.
namespace fcoe_target {
enum Position : std::size_t {
    SymbolicName,
    Fcid,
    PortWwn,
    NodeWwn,
    Role,
    State,
    SupportedClasses,
    SupportedTypes,
    ScsiBus = 9,
    ScsiTarget,
};
}  // namespace fcoe_target

// One target's details.
using FcoeTargetInfoRecord = TextRecord<7>;

// The positions in `FcoeTargetInfoRecord`.
namespace fcoe_target_info {
enum Position : std::size_t {
    SymbolicName,
    PortWwn,
    NodeWwn,
    Fcid,
    State,
    SupportedClasses,
    SupportedTypes,
};
}  // namespace fcoe_target_info

// One target that keeps its place on the operating system's SCSI bus.
using FcoeBindingRecord = TextRecord<8>;

// The positions in `FcoeBindingRecord`.
namespace fcoe_binding {
enum Position : std::size_t {
    Type,
    DeviceName,
    ScsiBus,
    ScsiTarget,
    Lun,
    PortWwn,
    NodeWwn,
    Fcid,
};
}  // namespace fcoe_binding

// One logical unit of a target.
using FcoeLunRecord = TextRecord<11>;

// The positions in `FcoeLunRecord`.
namespace fcoe_lun {
enum Position : std::size_t {
    Item,
    Vendor,
    Product,
    Revision,
    Capacity,
    BlockSize,
    Volumes,
    ConnectionState,
    ScsiUnit,
    DeviceName,
    DeviceType,
};
}  // namespace fcoe_lun

// What an FCoE port is asked to ping: how often, how long to wait (seconds), and which target. The
// numbers are decimal texts, empty for the library's own choice.
struct FcoePingRequest {
    std::string count;
    std::string timeout;
    std::string target;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"count", &FcoePingRequest::count},
                     Field{"timeout", &FcoePingRequest::timeout},
                     Field{"target", &FcoePingRequest::target});
    }
};

// What came of a ping. The times are decimal texts in milliseconds.
struct FcoePingResult {
    std::string sent;
    std::string averageTime;
    std::string shortestTime;
    std::string longestTime;
    std::string received;
    std::string lost;

    static constexpr auto Fields(auto visit) {
        return visit(
            Field{"text1", &FcoePingResult::sent}, Field{"time2", &FcoePingResult::averageTime},
            Field{"time3", &FcoePingResult::shortestTime},
            Field{"time4", &FcoePingResult::longestTime}, Field{"text5", &FcoePingResult::received},
            Field{"text6", &FcoePingResult::lost});
    }
};

// How a port finds its fabric: the FIP VLAN ID, a decimal text, and two texts of the library's own.
struct FipConfig {
    std::array<std::string, 2> libraryTexts;
    std::string vlanId;

    static constexpr auto Fields(auto visit) {
        return visit(SpreadField{"texts1to2", &FipConfig::libraryTexts},
                     Field{"vlanId", &FipConfig::vlanId});
    }
};

// One virtual port of a physical FCoE port, and the fabric that it is logged in to.
struct VirtualPortRecord {
    std::string libraryText1;
    std::string portWwn;
    std::string nodeWwn;
    std::string parentWwpn;
    std::string libraryText5;
    std::string fpmaMac;
    std::string fabricName;
    std::string fcfMac;
    std::string fcfNodeWwn;
    std::string fcfPortWwn;
    std::string fcid;
    std::string fcMap;
    std::string fabricVlan;
    std::string fabricPriority;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"text1", &VirtualPortRecord::libraryText1},
                     Field{"portWwn", &VirtualPortRecord::portWwn},
                     Field{"nodeWwn", &VirtualPortRecord::nodeWwn},
                     Field{"parentWwpn", &VirtualPortRecord::parentWwpn},
                     Field{"text5", &VirtualPortRecord::libraryText5},
                     Field{"fpmaMac", &VirtualPortRecord::fpmaMac},
                     Field{"fabricName", &VirtualPortRecord::fabricName},
                     Field{"fcfMac", &VirtualPortRecord::fcfMac},
                     Field{"fcfNodeWwn", &VirtualPortRecord::fcfNodeWwn},
                     Field{"fcfPortWwn", &VirtualPortRecord::fcfPortWwn},
                     Field{"fcid", &VirtualPortRecord::fcid},
                     Field{"fcMap", &VirtualPortRecord::fcMap},
                     Field{"fabricVlan", &VirtualPortRecord::fabricVlan},
                     Field{"fabricPriority", &VirtualPortRecord::fabricPriority});
    }
};

// A virtual port to create or to delete: its WWN and the physical port it belongs to. The other
// texts are the library's own and travel empty.
struct VirtualPortRequest {
    std::string libraryText1;
    std::string portWwn;
    std::string libraryText3;
    std::string physicalPort;
    std::array<std::string, 14> libraryTexts5To18;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"text1", &VirtualPortRequest::libraryText1},
                     Field{"portWwn", &VirtualPortRequest::portWwn},
                     Field{"text3", &VirtualPortRequest::libraryText3},
                     Field{"physicalPort", &VirtualPortRequest::physicalPort},
                     SpreadField{"texts5to18", &VirtualPortRequest::libraryTexts5To18});
    }
};

// The virtual port whose targets or logical units are asked for.
struct VirtualPortQuery {
    std::string portWwn;
    std::string physicalPort;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"portWwn", &VirtualPortQuery::portWwn},
                     Field{"physicalPort", &VirtualPortQuery::physicalPort});
    }
};

// One target that a virtual port sees.
struct VirtualPortTargetRecord {
    std::string libraryText1;
    std::string fcid;
    std::string portName;
    std::string nodeName;
    std::array<std::string, 5> libraryTexts5To9;
    std::string scsiBus;
    std::string scsiTarget;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"text1", &VirtualPortTargetRecord::libraryText1},
                     Field{"fcid", &VirtualPortTargetRecord::fcid},
                     Field{"portName", &VirtualPortTargetRecord::portName},
                     Field{"nodeName", &VirtualPortTargetRecord::nodeName},
                     SpreadField{"texts5to9", &VirtualPortTargetRecord::libraryTexts5To9},
                     Field{"scsiBus", &VirtualPortTargetRecord::scsiBus},
                     Field{"scsiTarget", &VirtualPortTargetRecord::scsiTarget});
    }
};

// One logical unit that a virtual port sees.
struct VirtualPortLunRecord {
    std::string volumes;
    std::string vendorId;
    std::string productId;
    std::string productRevision;
    std::string capacity;
    std::array<std::string, 2> libraryTexts6To7;
    std::string status;
    std::string scsiUnit;
    std::string deviceName;
    std::string deviceType;
    std::string targetPortWwn;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"volumes", &VirtualPortLunRecord::volumes},
                     Field{"vendorId", &VirtualPortLunRecord::vendorId},
                     Field{"productId", &VirtualPortLunRecord::productId},
                     Field{"productRevision", &VirtualPortLunRecord::productRevision},
                     Field{"capacity", &VirtualPortLunRecord::capacity},
                     SpreadField{"texts6to7", &VirtualPortLunRecord::libraryTexts6To7},
                     Field{"status", &VirtualPortLunRecord::status},
                     Field{"scsiUnit", &VirtualPortLunRecord::scsiUnit},
                     Field{"deviceName", &VirtualPortLunRecord::deviceName},
                     Field{"deviceType", &VirtualPortLunRecord::deviceType},
                     Field{"targetPortWwn", &VirtualPortLunRecord::targetPortWwn});
    }
};

template <>
struct OperationRecords<OperationCode::ReadFcoePort> : Exchanges<NoRecord, FcoePortRecord> {};

template <>
struct OperationRecords<OperationCode::ListFcoeTargets>
    : Exchanges<NoRecord, std::list<FcoeTargetRecord>> {};
template <>
struct OperationRecords<OperationCode::ReadFcoeTarget>
    : Exchanges<CharacterString, FcoeTargetInfoRecord> {};
template <>
struct OperationRecords<OperationCode::ListFcoeLuns>
    : Exchanges<CharacterString, std::list<FcoeLunRecord>> {};
// The number that the statistics operations take is zero; what the library does with it is its own.
template <>
struct OperationRecords<OperationCode::ReadFcoeStatistics>
    : Exchanges<std::uint32_t, FcoeStatisticsRecord> {};
template <>
struct OperationRecords<OperationCode::ResetFcoeStatistics>
    : Exchanges<std::uint32_t, FcoeStatisticsRecord> {};
template <>
struct OperationRecords<OperationCode::ListFcoeBindings>
    : Exchanges<NoRecord, std::list<FcoeBindingRecord>> {};
template <>
struct OperationRecords<OperationCode::PingFromFcoePort>
    : Exchanges<FcoePingRequest, FcoePingResult> {};
template <>
struct OperationRecords<OperationCode::ReadFip> : Exchanges<NoRecord, FipConfig> {};
template <>
struct OperationRecords<OperationCode::WriteFip> : Exchanges<FipConfig, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ListVirtualPorts>
    : Exchanges<NoRecord, std::list<VirtualPortRecord>> {};
template <>
struct OperationRecords<OperationCode::CreateVirtualPorts>
    : Exchanges<std::list<VirtualPortRequest>, NoRecord> {};
template <>
struct OperationRecords<OperationCode::DeleteVirtualPorts>
    : Exchanges<std::list<VirtualPortRequest>, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ListVirtualPortTargets>
    : Exchanges<VirtualPortQuery, std::list<VirtualPortTargetRecord>> {};
template <>
struct OperationRecords<OperationCode::ListVirtualPortLuns>
    : Exchanges<VirtualPortQuery, std::list<VirtualPortLunRecord>> {};

using FcoeOperations =
    OperationList<OperationCode::ReadFcoePort, OperationCode::ListFcoeTargets,
                  OperationCode::ReadFcoeTarget, OperationCode::ListFcoeLuns,
                  OperationCode::ReadFcoeStatistics, OperationCode::ResetFcoeStatistics,
                  OperationCode::ListFcoeBindings, OperationCode::PingFromFcoePort,
                  OperationCode::ReadFip, OperationCode::WriteFip, OperationCode::ListVirtualPorts,
                  OperationCode::CreateVirtualPorts, OperationCode::DeleteVirtualPorts,
                  OperationCode::ListVirtualPortTargets, OperationCode::ListVirtualPortLuns>;

}  // namespace tavroapi
