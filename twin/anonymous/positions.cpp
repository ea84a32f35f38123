#include "twin/anonymous/positions.h"

#include <algorithm>
#include <array>
#include <span>

#include "tavroapi/boot_records.h"
#include "tavroapi/ethernet_records.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/operation_code.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using enum TextKind;

constexpr int Any = -1;
constexpr int End = -2;

// Texts at a path, or at all paths that begin with it where it ends before.
struct PositionRow {
    std::string_view call;  // for operations empty
    OperationCode operation{};
    std::array<int, 3> path{End, End, End};
    TextKind kind = Kept;
};

constexpr PositionRow Query(std::string_view call, std::array<int, 3> path, TextKind kind) {
    return {call, {}, path, kind};
}

constexpr PositionRow At(OperationCode operation, std::size_t position, TextKind kind) {
    return {{}, operation, {static_cast<int>(position), End, End}, kind};
}

// In each element of a list.
constexpr PositionRow In(OperationCode operation, std::size_t position, TextKind kind) {
    return {{}, operation, {Any, static_cast<int>(position), End}, kind};
}

constexpr PositionRow Inside(OperationCode operation, std::array<int, 3> path, TextKind kind) {
    return {{}, operation, path, kind};
}

constexpr PositionRow All(OperationCode operation, TextKind kind) {
    return {{}, operation, {End, End, End}, kind};
}

namespace port = tavroapi::ethernet_port;
namespace boot = tavroapi::iscsi_boot;
namespace session = tavroapi::iscsi_session;
namespace iscsi = tavroapi::iscsi_port;
namespace fcoe = tavroapi::fcoe_port;

// The first row that fits counts. What no row fits is opaque.
constexpr PositionRow Outputs[] = {
    Query("GetHostName", {End, End, End}, HostName),
    Query("GetDiscoveredAdapters", {End, End, End}, Kept),
    Query("GetAdapterType", {End, End, End}, Kept),
    Query("GetPortWWNs", {1, Any, 2}, FunctionName),
    Query("GetPortWWNs", {End, End, End}, FunctionKey),

    All(OperationCode::ReadAdapterState, Kept),

    // Ethernet
    At(OperationCode::ReadEthernetPort, port::SerialNumber, SerialNumber),
    At(OperationCode::ReadEthernetPort, port::CurrentMac, Identifier),
    At(OperationCode::ReadEthernetPort, port::PermanentMac, Identifier),
    At(OperationCode::ReadEthernetPort, port::DeviceName, InterfaceName),
    At(OperationCode::ReadEthernetPort, port::LocallyAdministeredAddress, Identifier),
    At(OperationCode::ReadEthernetPort, port::ModelName, Kept),
    At(OperationCode::ReadEthernetPort, port::PartNumber, Kept),
    At(OperationCode::ReadEthernetPort, port::LinkState, Kept),
    At(OperationCode::ReadEthernetPort, port::LinkSpeed, Kept),
    At(OperationCode::ReadEthernetPort, port::MaximumLinkSpeed, Kept),
    At(OperationCode::ReadEthernetPort, port::Driver, Kept),
    At(OperationCode::ReadEthernetPort, port::OptionRomVersion, Kept),
    At(OperationCode::ReadEthernetPort, port::BootCodeVersion, Kept),
    At(OperationCode::ReadEthernetPort, port::FirmwareVersion, Kept),
    At(OperationCode::ReadEthernetPort, port::DriverVersion, Kept),
    At(OperationCode::ReadEthernetPort, port::LargestFrame, Kept),
    At(OperationCode::ReadEthernetPort, port::PciLocation, Kept),
    At(OperationCode::ReadEthernetPort, port::HardwareRevision, Kept),
    At(OperationCode::ReadEthernetPort, port::FlowControl, Kept),
    Inside(OperationCode::ReadAdapterSettings, {0, 1, End}, Identifier),
    Inside(OperationCode::ReadAdapterSettings, {Any, 2, End}, Opaque),
    All(OperationCode::ReadAdapterSettings, Kept),
    All(OperationCode::ReadEthernetStatistics, Kept),
    At(OperationCode::ReadEthernetTcpIp, 1, Address),
    At(OperationCode::ReadEthernetTcpIp, 2, Address),
    At(OperationCode::ReadEthernetTcpIp, 3, Address),
    At(OperationCode::ReadEthernetTcpIp, 9, Address),
    At(OperationCode::ReadEthernetTcpIp, 11, Address),
    At(OperationCode::ReadEthernetTcpIp, 12, Opaque),
    At(OperationCode::ReadEthernetTcpIp, 14, Address),
    At(OperationCode::ReadEthernetTcpIp, 15, Opaque),
    At(OperationCode::ReadEthernetTcpIp, 16, Opaque),
    All(OperationCode::ReadEthernetTcpIp, Kept),

    // iSCSI
    At(OperationCode::ReadIscsiPort, iscsi::Mac, Identifier),
    At(OperationCode::ReadIscsiPort, iscsi::SerialNumber, SerialNumber),
    At(OperationCode::ReadIscsiPort, iscsi::Address, Address),
    At(OperationCode::ReadIscsiPort, iscsi::SubnetMask, Address),
    At(OperationCode::ReadIscsiPort, iscsi::Gateway, Address),
    At(OperationCode::ReadIscsiPort, iscsi::AddressIPv6, Address),
    At(OperationCode::ReadIscsiPort, iscsi::GatewayIPv6, Address),
    All(OperationCode::ReadIscsiPort, Kept),
    All(OperationCode::ReadIscsiDefaults, Kept),
    All(OperationCode::ReadIscsiStatistics, Kept),
    At(OperationCode::ReadIscsiBoot, boot::IpAddress, Address),
    At(OperationCode::ReadIscsiBoot, boot::SubnetMask, Address),
    At(OperationCode::ReadIscsiBoot, boot::Gateway, Address),
    At(OperationCode::ReadIscsiBoot, boot::InitiatorName, IscsiName),
    At(OperationCode::ReadIscsiBoot, boot::ChapName, ChapName),
    At(OperationCode::ReadIscsiBoot, boot::FirstTarget + boot::TargetAddress, Address),
    At(OperationCode::ReadIscsiBoot, boot::FirstTarget + boot::TargetName, IscsiName),
    At(OperationCode::ReadIscsiBoot, boot::FirstTarget + boot::TargetChapName, ChapName),
    At(OperationCode::ReadIscsiBoot, boot::SecondTarget + boot::TargetAddress, Address),
    At(OperationCode::ReadIscsiBoot, boot::SecondTarget + boot::TargetName, IscsiName),
    At(OperationCode::ReadIscsiBoot, boot::SecondTarget + boot::TargetChapName, ChapName),
    At(OperationCode::ReadIscsiBoot, boot::BoundAddress, Address),
    At(OperationCode::ReadIscsiBoot, 1, Opaque),
    At(OperationCode::ReadIscsiBoot, 3, Opaque),
    At(OperationCode::ReadIscsiBoot, 5, Opaque),
    At(OperationCode::ReadIscsiBoot, 7, Opaque),
    All(OperationCode::ReadIscsiBoot, Kept),
    In(OperationCode::ListPortals, 0, Address),
    All(OperationCode::ListPortals, Kept),
    In(OperationCode::ListTargets, 0, IscsiName),
    In(OperationCode::ListTargets, 1, Alias),
    In(OperationCode::ListTargets, 3, Address),
    All(OperationCode::ListTargets, Kept),
    In(OperationCode::ListActiveTargets, 0, IscsiName),
    In(OperationCode::ListActiveTargets, 1, Alias),
    In(OperationCode::ListActiveTargets, 3, Address),
    All(OperationCode::ListActiveTargets, Kept),
    At(OperationCode::ReadTarget, 0, IscsiName),
    At(OperationCode::ReadTarget, 1, Alias),
    At(OperationCode::ReadTarget, 3, Address),
    All(OperationCode::ReadTarget, Kept),
    In(OperationCode::ListLuns, tavroapi::iscsi_lun::Vendor, Opaque),
    In(OperationCode::ListLuns, tavroapi::iscsi_lun::Product, Opaque),
    In(OperationCode::ListLuns, tavroapi::iscsi_lun::SerialNumber, SerialNumber),
    All(OperationCode::ListLuns, Kept),
    At(OperationCode::ReadSession, session::TargetName, IscsiName),
    At(OperationCode::ReadSession, session::TargetAlias, Alias),
    At(OperationCode::ReadSession, session::TargetAddress, Address),
    At(OperationCode::ReadSession, session::InitiatorName, IscsiName),
    At(OperationCode::ReadSession, session::InitiatorAddress, Address),
    At(OperationCode::ReadSession, session::TargetChapName, ChapName),
    At(OperationCode::ReadSession, session::InitiatorChapName, ChapName),
    All(OperationCode::ReadSession, Kept),
    All(OperationCode::ListIsnsServers, Address),
    At(OperationCode::ReadInitiator, 0, IscsiName),
    Inside(OperationCode::ReadInitiator, {1, 4, End}, ChapName),
    Inside(OperationCode::ReadInitiator, {1, 6, End}, ChapName),
    All(OperationCode::ReadInitiator, Kept),

    // FCoE
    At(OperationCode::ReadFcoePort, fcoe::Title, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::NodeWwn, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::PortWwn, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::FabricName, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::SerialNumber, SerialNumber),
    At(OperationCode::ReadFcoePort, fcoe::DeviceName, DeviceName),
    At(OperationCode::ReadFcoePort, fcoe::HostName, HostName),
    At(OperationCode::ReadFcoePort, fcoe::FpmaMac, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::FcfMac, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::FcfNodeWwn, Identifier),
    At(OperationCode::ReadFcoePort, fcoe::FcfPortWwn, Identifier),
    All(OperationCode::ReadFcoePort, Kept),
    In(OperationCode::ListFcoeTargets, tavroapi::fcoe_target::SymbolicName, Alias),
    In(OperationCode::ListFcoeTargets, tavroapi::fcoe_target::PortWwn, Identifier),
    In(OperationCode::ListFcoeTargets, tavroapi::fcoe_target::NodeWwn, Identifier),
    In(OperationCode::ListFcoeTargets, 8, Opaque),
    All(OperationCode::ListFcoeTargets, Kept),
    At(OperationCode::ReadFcoeTarget, tavroapi::fcoe_target_info::SymbolicName, Alias),
    At(OperationCode::ReadFcoeTarget, tavroapi::fcoe_target_info::PortWwn, Identifier),
    At(OperationCode::ReadFcoeTarget, tavroapi::fcoe_target_info::NodeWwn, Identifier),
    All(OperationCode::ReadFcoeTarget, Kept),
    In(OperationCode::ListFcoeLuns, tavroapi::fcoe_lun::Vendor, Opaque),
    In(OperationCode::ListFcoeLuns, tavroapi::fcoe_lun::Product, Opaque),
    In(OperationCode::ListFcoeLuns, tavroapi::fcoe_lun::Volumes, DeviceName),
    In(OperationCode::ListFcoeLuns, tavroapi::fcoe_lun::DeviceName, DeviceName),
    All(OperationCode::ListFcoeLuns, Kept),
    All(OperationCode::ReadFcoeStatistics, Kept),
    In(OperationCode::ListFcoeBindings, tavroapi::fcoe_binding::DeviceName, DeviceName),
    In(OperationCode::ListFcoeBindings, tavroapi::fcoe_binding::PortWwn, Identifier),
    In(OperationCode::ListFcoeBindings, tavroapi::fcoe_binding::NodeWwn, Identifier),
    All(OperationCode::ListFcoeBindings, Kept),
    All(OperationCode::ReadDcbInfo, Kept),
    Inside(OperationCode::ReadFcoeBoot, {6, Any, 0}, Identifier),
    All(OperationCode::ReadFcoeBoot, Kept),
    All(OperationCode::ReadDcbConfig, Kept),
    At(OperationCode::ReadFip, 2, Kept),
    In(OperationCode::ListVirtualPorts, 0, Opaque),
    In(OperationCode::ListVirtualPorts, 4, Opaque),
    In(OperationCode::ListVirtualPorts, 10, Kept),
    In(OperationCode::ListVirtualPorts, 11, Kept),
    In(OperationCode::ListVirtualPorts, 12, Kept),
    In(OperationCode::ListVirtualPorts, 13, Kept),
    All(OperationCode::ListVirtualPorts, Identifier),
    In(OperationCode::ListVirtualPortTargets, 1, Kept),
    In(OperationCode::ListVirtualPortTargets, 2, Identifier),
    In(OperationCode::ListVirtualPortTargets, 3, Identifier),
    In(OperationCode::ListVirtualPortTargets, 9, Kept),
    In(OperationCode::ListVirtualPortTargets, 10, Kept),
    In(OperationCode::ListVirtualPortLuns, 0, DeviceName),
    In(OperationCode::ListVirtualPortLuns, 3, Kept),
    In(OperationCode::ListVirtualPortLuns, 4, Kept),
    In(OperationCode::ListVirtualPortLuns, 7, Kept),
    In(OperationCode::ListVirtualPortLuns, 8, Kept),
    In(OperationCode::ListVirtualPortLuns, 9, DeviceName),
    In(OperationCode::ListVirtualPortLuns, 10, Kept),
    In(OperationCode::ListVirtualPortLuns, 11, Identifier),

    // Partitions: what the library says of functions in its own texts is opaque.
    At(OperationCode::ReadPartitions, 0, Kept),
    At(OperationCode::ReadPartitions, 1, Kept),
    Inside(OperationCode::ReadPartitions, {Any, 1, End}, Kept),
    Inside(OperationCode::ReadPartitions, {Any, 2, End}, Kept),
    Inside(OperationCode::ReadPartitions, {Any, 3, End}, Kept),
    Inside(OperationCode::ReadPartitions, {Any, 9, End}, Kept),
    At(OperationCode::ReadPartitions, 6, Kept),
    At(OperationCode::ReadPartitions, 7, Kept),
    At(OperationCode::ReadPartitions, 8, Kept),
    At(OperationCode::ReadPartitions, 9, Kept),
    All(OperationCode::ReadPersonality, Kept),
};

constexpr PositionRow Inputs[] = {
    All(OperationCode::ReadTarget, IscsiName),
    All(OperationCode::ListLuns, IscsiName),
    At(OperationCode::ReadSession, session::TargetName, IscsiName),
    At(OperationCode::ReadSession, session::Id, Kept),
    All(OperationCode::ReadFcoeTarget, Identifier),
    All(OperationCode::ListFcoeLuns, Identifier),
    All(OperationCode::ListVirtualPortTargets, Identifier),
    All(OperationCode::ListVirtualPortLuns, Identifier),
};

bool IsAt(const PositionRow& row, const TextPath& path) {
    for (std::size_t i = 0; i < row.path.size() && row.path[i] != End; ++i) {
        const bool isHere =
            i < path.size() && (row.path[i] == Any || row.path[i] == static_cast<int>(path[i]));
        if (!isHere) {
            return false;
        }
    }
    return true;
}

TextKind KindIn(std::span<const PositionRow> rows, std::string_view call, std::uint32_t operation,
                const TextPath& path) {
    const auto found = std::ranges::find_if(rows, [&](const PositionRow& row) {
        const bool isOfCall = row.call.empty()
                                  ? static_cast<std::uint32_t>(row.operation) == operation
                                  : row.call == call;
        return isOfCall && IsAt(row, path);
    });
    return found == rows.end() ? Opaque : found->kind;
}

}  // namespace

TextKind OutputKind(std::string_view call, std::uint32_t operation, const TextPath& path) {
    return KindIn(Outputs, call, operation, path);
}

TextKind InputKind(std::uint32_t operation, const TextPath& path) {
    return KindIn(Inputs, {}, operation, path);
}

}  // namespace tavrohost
