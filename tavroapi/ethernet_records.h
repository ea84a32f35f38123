#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// The numbers of the texts in `EthernetPortInfo` whose meaning is known.
namespace ethernet_port {
enum Position : std::size_t {
    ModelName,
    SerialNumber,
    PartNumber,
    CurrentMac = 6,
    PermanentMac,
    LinkState = 9,
    LinkSpeed,
    MaximumLinkSpeed = 12,
    Driver,
    OptionRomVersion,
    BootCodeVersion,
    FirmwareVersion,
    DriverVersion = 22,
    LargestFrame,
    PciLocation = 26,
    DeviceName,  // the wide one
    LocallyAdministeredAddress = 29,
    HardwareRevision = 31,
    FlowControl,
};
}  // namespace ethernet_port

// What the library tells about an Ethernet port: 33 texts numbered from 0, of which one is wide.
struct EthernetPortInfo {
    std::array<std::string, ethernet_port::DeviceName> texts0To26;
    std::wstring wideText27;
    std::array<std::string, 5> texts28To32;

    // The narrow text of that number, which is not the wide one's.
    std::string& NarrowText(std::size_t number) {
        return number < ethernet_port::DeviceName
                   ? texts0To26.at(number)
                   : texts28To32.at(number - ethernet_port::DeviceName - 1);
    }

    static constexpr auto Fields(auto visit) {
        return visit(SpreadField{"texts0To26", &EthernetPortInfo::texts0To26},
                     Field{"wideText27", &EthernetPortInfo::wideText27},
                     SpreadField{"texts28To32", &EthernetPortInfo::texts28To32});
    }
};

// The counters of an Ethernet port, rendered as texts and numbered from 0.
using EthernetPortStatistics = TextRecord<37>;

// The positions in `EthernetPortStatistics` whose meaning is known.
namespace ethernet_statistics {
enum Position : std::size_t {
    FramesSent,
    FramesReceived,
    ReceiveErrors,
    TransmitErrors,
    SentFramesDropped,
    UnicastFramesSent = 6,
    MulticastFramesSent = 8,
    BroadcastFramesSent = 10,
    UnicastFramesReceived = 12,
    MulticastFramesReceived = 14,
    BroadcastFramesReceived = 16,
    ExcessiveCollisions,
    AlignmentErrors,
    DeferredFrames,
    BytesReceived,
    BytesSent,
    ChecksumErrors,
    SingleCollisions,
    Fragments,
    JabberFrames,
    LongFrames,
    FramesWithoutBuffer,
    LateCollisions,
    ShortFrames,
    ReceivedFramesDropped = 32,
    PauseFramesSent,
    PauseFramesReceived,
    PriorityPauseFramesSent,
    PriorityPauseFramesReceived,
};
}  // namespace ethernet_statistics

// What the statistics operations take: 1.
using StatisticsFlag = std::uint8_t;

// One setting of an Ethernet adapter. `choices` holds what it can be: for a choice the texts by the
// numbers that select them; for a range three entries whose texts are "min", "step" and "max" and
// whose keys are the bounds. `changed` is "1" once the value was given another one.
struct AdapterSetting {
    std::int32_t libraryNumber = 0;
    std::string value;
    std::string libraryText;
    std::map<std::int32_t, std::wstring> choices;
    std::string changed;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"libraryNumber", &AdapterSetting::libraryNumber},
                     Field{"value", &AdapterSetting::value},
                     Field{"libraryText", &AdapterSetting::libraryText},
                     Field{"choices", &AdapterSetting::choices},
                     Field{"changed", &AdapterSetting::changed});
    }
};

// The value of a setting that the adapter does not have.
inline constexpr const char* SettingNotAvailable = "NA";

// The settings of an Ethernet adapter, numbered from 0.
struct AdapterSettings {
    std::array<AdapterSetting, 31> settings;

    static constexpr auto Fields(auto visit) {
        return visit(SpreadField{"settings", &AdapterSettings::settings});
    }
};

template <>
struct OperationRecords<OperationCode::ReadEthernetPort> : Exchanges<NoRecord, EthernetPortInfo> {};
template <>
struct OperationRecords<OperationCode::ReadAdapterSettings> : Exchanges<NoRecord, AdapterSettings> {
};
template <>
struct OperationRecords<OperationCode::WriteAdapterSettings>
    : Exchanges<AdapterSettings, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ReadEthernetStatistics>
    : Exchanges<StatisticsFlag, EthernetPortStatistics> {};
template <>
struct OperationRecords<OperationCode::ResetEthernetStatistics>
    : Exchanges<StatisticsFlag, EthernetPortStatistics> {};
template <>
struct OperationRecords<OperationCode::ExportAdapterSettings>
    : Exchanges<NoRecord, AdapterSettings> {};

using EthernetOperations =
    OperationList<OperationCode::ReadEthernetPort, OperationCode::ReadAdapterSettings,
                  OperationCode::WriteAdapterSettings, OperationCode::ReadEthernetStatistics,
                  OperationCode::ResetEthernetStatistics, OperationCode::ExportAdapterSettings>;

}  // namespace tavroapi
