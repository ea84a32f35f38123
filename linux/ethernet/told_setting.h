#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "linux/ethernet/settings_table.h"

// What the rows of the settings have in common, and the rows of each kind.
namespace tavrolinux {

// A setting that the device lacks or fixes.
ToldSetting NotThere(const EthernetDevice& device = {});

// A setting that is only told. An empty text, and no number of something, are what the device
// lacks.
ToldSetting Fixed(std::string value);
ToldSetting FixedNumber(std::uint64_t number);

// Something that is on or off, and can be changed.
ToldSetting Switch(bool isOn);
std::string SwitchText(bool isOn);
bool IsSwitchedOn(const std::string& value);

// A choice of texts. With only one the setting is fixed.
ToldSetting OneOf(std::string value, const std::vector<std::wstring>& texts);

// A choice of numbers, to which the present one is added.
ToldSetting OneOf(std::uint32_t present, std::set<std::uint32_t> numbers);

// The number that a value begins with.
std::uint32_t NumberFrom(const std::string& value);

// What is done with frames that come and with those that go.
struct BothDirections {
    bool receives = false;
    bool sends = false;
};

// As one of the texts of the directions, and back.
std::wstring DirectionText(BothDirections on);
BothDirections DirectionsFrom(const std::string& value);

// The rows of what the device does with frames by itself; of the link; of buffers, queues and
// interrupts; of what is only told.
std::span<const SettingRow> FeatureSettings();
std::span<const SettingRow> LinkSettings();
std::span<const SettingRow> QueueSettings();
std::span<const SettingRow> ToldSettings();

}  // namespace tavrolinux
