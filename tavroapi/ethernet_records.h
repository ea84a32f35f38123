#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "tavroapi/operations.h"

namespace tavroapi {

// What the library tells about an Ethernet port: 33 texts numbered from 0, of which one is wide.
struct EthernetPortInfo {
    static constexpr std::size_t WidePosition = 27;

    std::array<std::string, WidePosition> texts0To26;
    std::wstring wideText27;
    std::array<std::string, 5> texts28To32;

    static constexpr auto Fields() {
        return std::tuple{SpreadField{"texts0To26", &EthernetPortInfo::texts0To26},
                          Field{"wideText27", &EthernetPortInfo::wideText27},
                          SpreadField{"texts28To32", &EthernetPortInfo::texts28To32}};
    }
};

// The counters of an Ethernet port, rendered as texts and numbered from 0.
using EthernetPortStatistics = TextRecord<37>;

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

    static constexpr auto Fields() {
        return std::tuple{Field{"libraryNumber", &AdapterSetting::libraryNumber},
                          Field{"value", &AdapterSetting::value},
                          Field{"libraryText", &AdapterSetting::libraryText},
                          Field{"choices", &AdapterSetting::choices},
                          Field{"changed", &AdapterSetting::changed}};
    }
};

// The value of a setting that the adapter does not have.
inline constexpr const char* SettingNotAvailable = "NA";

// The settings of an Ethernet adapter, numbered from 0.
struct AdapterSettings {
    std::array<AdapterSetting, 31> settings;

    static constexpr auto Fields() {
        return std::tuple{SpreadField{"settings", &AdapterSettings::settings}};
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
