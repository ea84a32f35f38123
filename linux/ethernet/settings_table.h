#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "library/calls/outcome.h"
#include "library/calls/setting_values.h"
#include "linux/ethernet/device.h"

// The adapter settings: what each is and can be on a device, and what of the device it changes.
namespace tavrolinux {

// The value of what the device has, but cannot tell for now.
inline constexpr const char* UnknownValue = "Unknown";

// What a setting is, and what it can be: nothing where it cannot be changed.
struct ToldSetting {
    std::string value;
    tavrolib::SettingChoices choices;
};

// How the device is to be when all changes are made.
struct DevicePlan {
    EthernetDevice target;
    std::map<std::string, bool> wantedFeatures{};
    std::optional<std::string> contradiction{};  // a feature that one setting wants on, one off
};

struct SettingRow {
    std::size_t number = 0;
    ToldSetting (*tell)(const EthernetDevice& device) = nullptr;
    // Plans a value that the setting can have, or refuses it; null where it cannot be changed.
    // Called only for what is told with choices, and for an address.
    tavrolib::Outcome (*plan)(const std::string& value, DevicePlan& plan) = nullptr;
    bool isAddress = false;
    bool isRounded = false;  // the driver takes the nearest number that it can
};

// A row for every setting of the record, in the order of their numbers.
std::span<const SettingRow> SettingTable();

}  // namespace tavrolinux
