// The settings of what a device does with frames by itself.
#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "library/text/text.h"
#include "linux/ethernet/told_setting.h"

namespace tavrolinux {
namespace {

using tavrolib::Done;
using tavrolib::Outcome;

Feature FeatureOf(const EthernetDevice& device, std::string_view name) {
    const auto found = device.features.find(name);
    return found == device.features.end() ? Feature{} : found->second;
}

// Several settings may share a feature.
void WantFeature(DevicePlan& plan, const std::string& name, bool isOn) {
    if (!FeatureOf(plan.target, name).canChange) {
        return;
    }
    const auto [wanted, isNew] = plan.wantedFeatures.emplace(name, isOn);
    if (wanted->second != isOn) {
        plan.contradiction = name;
    }
    plan.target.features[name].isWanted = isOn;
}

ToldSetting TellFeature(const EthernetDevice& device, std::string_view name) {
    const Feature feature = FeatureOf(device, name);
    return feature.canChange ? Switch(feature.isActive) : NotThere();
}

// Names as template arguments.
template <std::size_t Size>
struct FeatureName {
    // NOLINTNEXTLINE(google-explicit-constructor): a name is written as a plain literal
    consteval FeatureName(const char (&name)[Size]) { std::copy_n(name, Size, text.begin()); }
    std::array<char, Size> text{};
};

template <FeatureName Name>
ToldSetting TellSwitch(const EthernetDevice& device) {
    return TellFeature(device, Name.text.data());
}

template <FeatureName Name>
Outcome PlanSwitch(const std::string& value, DevicePlan& plan) {
    WantFeature(plan, Name.text.data(), IsSwitchedOn(value));
    return Done();
}

constexpr const char* ReceiveChecksum = "rx-checksum";

// A device has one feature for all protocols, or one for each.
template <FeatureName OwnName>
std::string SendChecksum(const EthernetDevice& device) {
    constexpr const char* Generic = "tx-checksum-ip-generic";
    const Feature generic = FeatureOf(device, Generic);
    return generic.canChange || generic.isActive ? Generic : OwnName.text.data();
}

template <FeatureName OwnName>
ToldSetting TellChecksum(const EthernetDevice& device) {
    const Feature receive = FeatureOf(device, ReceiveChecksum);
    const Feature send = FeatureOf(device, SendChecksum<OwnName>(device));
    std::vector<std::wstring> texts;
    for (const bool sends : {false, true}) {
        for (const bool receives : {false, true}) {
            if ((send.canChange || sends == send.isActive) &&
                (receive.canChange || receives == receive.isActive)) {
                texts.emplace_back(DirectionText({receives, sends}));
            }
        }
    }
    return OneOf(tavrolib::Utf8FromWide(DirectionText({receive.isActive, send.isActive})), texts);
}

template <FeatureName OwnName>
Outcome PlanChecksum(const std::string& value, DevicePlan& plan) {
    const BothDirections wanted = DirectionsFrom(value);
    WantFeature(plan, ReceiveChecksum, wanted.receives);
    WantFeature(plan, SendChecksum<OwnName>(plan.target), wanted.sends);
    return Done();
}

std::string SegmentCoalescing(const EthernetDevice& device) {
    return FeatureOf(device, "rx-gro-hw").canChange ? "rx-gro-hw" : "rx-lro";
}

ToldSetting TellSegmentCoalescing(const EthernetDevice& device) {
    return TellFeature(device, SegmentCoalescing(device));
}

Outcome PlanSegmentCoalescing(const std::string& value, DevicePlan& plan) {
    WantFeature(plan, SegmentCoalescing(plan.target), IsSwitchedOn(value));
    return Done();
}

constexpr SettingRow FeatureRows[] = {
    {4, TellChecksum<"tx-checksum-ipv4">, PlanChecksum<"tx-checksum-ipv4">},
    {5, TellChecksum<"tx-checksum-ipv6">, PlanChecksum<"tx-checksum-ipv6">},
    {12, TellSwitch<"tx-tcp-segmentation">, PlanSwitch<"tx-tcp-segmentation">},
    {16, TellSwitch<"rx-hashing">, PlanSwitch<"rx-hashing">},
    {23, TellSwitch<"tx-tcp6-segmentation">, PlanSwitch<"tx-tcp6-segmentation">},
    {24, TellSegmentCoalescing, PlanSegmentCoalescing},
};

}  // namespace

std::span<const SettingRow> FeatureSettings() {
    return FeatureRows;
}

}  // namespace tavrolinux
