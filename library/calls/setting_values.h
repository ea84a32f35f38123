#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "library/calls/outcome.h"
#include "tavroapi/ethernet_records.h"

// What the adapter settings of Ethernet functions can be set to, in every library of ours.
namespace tavrolib {

using SettingChoices = decltype(tavroapi::AdapterSetting::choices);

// The values that settings of several libraries have.
inline constexpr const wchar_t* OffAndOn[] = {L"Disabled", L"Enabled"};
inline constexpr const wchar_t* Directions[] = {L"Disabled", L"Rx Enabled", L"Tx Enabled",
                                                L"Rx & Tx Enabled"};

// Of the speed and the flow control: left to what both ends of the link can do.
inline constexpr const wchar_t* AutoNegotiation = L"Auto Negotiation";

// The locally administered address of a function that has its own.
inline constexpr const char* NoAssignedAddress = "Not Present";

// The choices of a list, numbered from 1, so that an answer without digits selects none.
SettingChoices ListOf(std::span<const wchar_t* const> values);
SettingChoices ListOf(std::span<const std::wstring> values);

// The numbers that a setting can have: the multiples of the step among them.
struct SettingRange {
    std::int32_t minimum = 0;
    std::int32_t step = 0;
    std::int32_t maximum = 0;
};

// A range is told by three choices, whose texts say which bound their key is; its numbers must
// differ.
SettingChoices ChoicesOf(const SettingRange& range);
std::optional<SettingRange> RangeOf(const SettingChoices& choices);

// A setting that is to be changed: its number, what it is and can be, and whether it is the
// address, which takes any that somebody may give away.
struct KnownSetting {
    std::size_t number = 0;
    const std::string& value;
    const SettingChoices& choices;
    bool isAddress = false;
};

// Done when the setting can have that value, else the refusal: the adapter lacks the setting, it
// is fixed (it has no choices), or it cannot have that value. The address can be 0, for its own.
Outcome CheckSettingValue(const KnownSetting& setting, const std::string& wanted);

// What refusals call a setting.
std::wstring SettingDetails(std::size_t number);

}  // namespace tavrolib
