#include "library/calls/setting_values.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "library/calls/refusals.h"
#include "library/text/identifier.h"
#include "library/text/text.h"

namespace tavrolib {
namespace {

using SettingText = decltype(Refused)::Text;

template <class Values>
SettingChoices Numbered(const Values& values) {
    SettingChoices choices;
    std::int32_t key = 0;
    for (const auto& value : values) {
        choices[++key] = value;
    }
    return choices;
}

bool IsChoice(const std::string& value, const SettingChoices& choices) {
    return std::ranges::any_of(
        choices, [&value](const auto& choice) { return WideFromUtf8(value) == choice.second; });
}

bool IsInRange(const std::string& value, const SettingRange& range) {
    std::int32_t number = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    return error == std::errc() && stop == end && number >= range.minimum &&
           number <= range.maximum && range.step > 0 && number % range.step == 0;
}

// Whether the text is a MAC whose bits say "one station" and "locally administered".
bool IsAssignableAddress(const std::string& text) {
    const std::string digits = NormalIdentifier(text);
    return digits.size() == MacDigits &&
           std::string_view("26ae").find(digits[1]) != std::string::npos;
}

Outcome ValueIsRefused(const KnownSetting& setting, const std::string& value, SettingText action,
                       const std::wstring& allowed = {}) {
    return Refused(Status::SettingValueRefused, L"The setting cannot have this value.", action,
                   SettingDetails(setting.number) + L", value " + Quoted(value) + allowed);
}

}  // namespace

SettingChoices ListOf(std::span<const wchar_t* const> values) {
    return Numbered(values);
}

SettingChoices ListOf(std::span<const std::wstring> values) {
    return Numbered(values);
}

SettingChoices ChoicesOf(const SettingRange& range) {
    return {{range.minimum, L"min"}, {range.step, L"step"}, {range.maximum, L"max"}};
}

std::optional<SettingRange> RangeOf(const SettingChoices& choices) {
    std::map<std::wstring, std::int32_t> bounds;
    for (const auto& [bound, name] : choices) {
        bounds.emplace(name, bound);
    }
    constexpr std::size_t BoundCount = 3;
    if (choices.size() != BoundCount || !bounds.contains(L"min") || !bounds.contains(L"step") ||
        !bounds.contains(L"max")) {
        return std::nullopt;
    }
    return SettingRange{bounds[L"min"], bounds[L"step"], bounds[L"max"]};
}

Outcome CheckSettingValue(const KnownSetting& setting, const std::string& wanted) {
    const SettingChoices& choices = setting.choices;
    if (setting.value == tavroapi::SettingNotAvailable) {
        return Refused(Status::SettingMissing, L"The adapter does not have this setting.",
                       L"Run the command with \"-getadapinfo\" to see the settings of the adapter.",
                       SettingDetails(setting.number));
    }
    if (choices.empty() && setting.isAddress) {
        return wanted == "0" || IsAssignableAddress(wanted)
                   ? Done()
                   : ValueIsRefused(setting, wanted,
                                    L"Set it to 0, or to a locally administered unicast address "
                                    L"such as 02-00-5E-00-00-01.");
    }
    if (choices.empty()) {
        return Refused(Status::SettingFixed, L"This setting cannot be changed.",
                       L"Leave it as it is.", SettingDetails(setting.number));
    }
    if (const auto range = RangeOf(choices)) {
        return IsInRange(wanted, *range)
                   ? Done()
                   : ValueIsRefused(setting, wanted,
                                    L"Set it to a multiple of its step within its range.",
                                    L", range " + std::to_wstring(range->minimum) + L" to " +
                                        std::to_wstring(range->maximum) + L", step " +
                                        std::to_wstring(range->step));
    }
    return IsChoice(wanted, choices)
               ? Done()
               : ValueIsRefused(setting, wanted, L"Set it to one of its choices.");
}

std::wstring SettingDetails(std::size_t number) {
    return L"setting " + std::to_wstring(number);
}

}  // namespace tavrolib
