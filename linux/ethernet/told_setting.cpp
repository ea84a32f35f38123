#include "linux/ethernet/told_setting.h"

#include <charconv>
#include <utility>

namespace tavrolinux {

ToldSetting NotThere(const EthernetDevice& /*device*/) {
    return {tavroapi::SettingNotAvailable, {}};
}

ToldSetting Fixed(std::string value) {
    return value.empty() ? NotThere() : ToldSetting{std::move(value), {}};
}

ToldSetting FixedNumber(std::uint64_t number) {
    return Fixed(number == 0 ? std::string() : std::to_string(number));
}

std::string SwitchText(bool isOn) {
    return isOn ? "Enabled" : "Disabled";
}

bool IsSwitchedOn(const std::string& value) {
    return value == "Enabled";
}

ToldSetting Switch(bool isOn) {
    return {SwitchText(isOn), tavrolib::ListOf(tavrolib::OffAndOn)};
}

ToldSetting OneOf(std::string value, const std::vector<std::wstring>& texts) {
    return texts.size() < 2 ? NotThere() : ToldSetting{std::move(value), tavrolib::ListOf(texts)};
}

ToldSetting OneOf(std::uint32_t present, std::set<std::uint32_t> numbers) {
    numbers.insert(present);
    std::vector<std::wstring> texts;
    texts.reserve(numbers.size());
    for (const std::uint32_t number : numbers) {
        texts.push_back(std::to_wstring(number));
    }
    return OneOf(std::to_string(present), texts);
}

std::uint32_t NumberFrom(const std::string& text) {
    std::uint32_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::wstring DirectionText(BothDirections on) {
    return tavrolib::Directions[(on.receives ? 1U : 0U) + (on.sends ? 2U : 0U)];
}

BothDirections DirectionsFrom(const std::string& value) {
    return {value.starts_with("Rx"), value.find("Tx") != std::string::npos};
}

}  // namespace tavrolinux
