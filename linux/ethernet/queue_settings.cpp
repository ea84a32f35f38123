// The settings of buffers, queues and interrupts.
#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "linux/ethernet/told_setting.h"

namespace tavrolinux {
namespace {

using tavrolib::Done;
using tavrolib::Outcome;

// The kernel tells the largest number alone. That of the smallest driver is not known, so the range
// begins where its three numbers differ, and the driver refuses or rounds what it cannot have.
ToldSetting TellBuffers(const Amount& amount) {
    constexpr std::uint32_t Smallest = 2;
    constexpr auto Largest = static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
    if (amount.largest > Smallest) {
        const auto largest = static_cast<std::int32_t>(std::min(amount.largest, Largest));
        return {std::to_string(amount.present),
                tavrolib::ChoicesOf({static_cast<std::int32_t>(Smallest), 1, largest})};
    }
    return amount.largest == Smallest ? OneOf(amount.present, {1, Smallest}) : NotThere();
}

template <Amount Rings::*Which>
ToldSetting TellRing(const EthernetDevice& device) {
    return device.rings ? TellBuffers((*device.rings).*Which) : NotThere();
}

template <Amount Rings::*Which>
Outcome PlanRing(const std::string& value, DevicePlan& plan) {
    ((*plan.target.rings).*Which).present = NumberFrom(value);
    return Done();
}

// Queues that only receive, where the device has no others.
Amount& ReceivingQueues(Channels& channels) {
    return channels.combined.largest != 0 ? channels.combined : channels.receive;
}

ToldSetting TellQueues(const EthernetDevice& device) {
    Channels channels = device.channels.value_or(Channels{});
    const Amount queues = ReceivingQueues(channels);
    if (queues.largest < 2) {
        return NotThere();
    }
    std::set<std::uint32_t> numbers{queues.largest};
    for (std::uint64_t number = 1; number < queues.largest; number *= 2) {
        numbers.insert(static_cast<std::uint32_t>(number));
    }
    return OneOf(queues.present, std::move(numbers));
}

Outcome PlanQueues(const std::string& value, DevicePlan& plan) {
    ReceivingQueues(*plan.target.channels).present = NumberFrom(value);
    return Done();
}

ToldSetting TellModeration(const EthernetDevice& device) {
    const Coalescing told = device.coalescing.value_or(Coalescing{});
    if (!told.isAdaptive && !told.receiveDelay) {
        return NotThere();
    }
    return Switch(told.isAdaptive.value_or(false) || told.receiveDelay.value_or(0) != 0);
}

// The device chooses the delay where it can. There is one nevertheless, for when it does not.
Outcome PlanModeration(const std::string& value, DevicePlan& plan) {
    constexpr std::uint32_t UsualDelay = 50;
    Coalescing& coalescing = *plan.target.coalescing;
    const bool isOn = IsSwitchedOn(value);
    if (coalescing.receiveDelay && !isOn) {
        coalescing.receiveDelay = 0;
    } else if (coalescing.receiveDelay == 0U) {
        coalescing.receiveDelay = UsualDelay;
    }
    if (coalescing.isAdaptive) {
        coalescing.isAdaptive = isOn;
    }
    return Done();
}

constexpr const char* MagicPacket = "magic";

ToldSetting TellMagicPacket(const EthernetDevice& device) {
    if (device.isWakeUpHidden) {
        return {};
    }
    const NamedBits modes = device.wakeUp.value_or(NamedBits{});
    const auto magic = modes.find(MagicPacket);
    return magic == modes.end() ? NotThere() : Switch(magic->second);
}

Outcome PlanMagicPacket(const std::string& value, DevicePlan& plan) {
    (*plan.target.wakeUp)[MagicPacket] = IsSwitchedOn(value);
    return Done();
}

constexpr SettingRow QueueRows[] = {
    {10, TellRing<&Rings::receive>, PlanRing<&Rings::receive>, false, true},
    {13, TellMagicPacket, PlanMagicPacket},
    {14, TellModeration, PlanModeration},
    {17, TellQueues, PlanQueues},
    {25, TellRing<&Rings::send>, PlanRing<&Rings::send>, false, true},
    {26, [](const EthernetDevice& device) { return FixedNumber(device.receiveQueues); }},
    {27, [](const EthernetDevice& device) { return FixedNumber(device.sendQueues); }},
};

}  // namespace

std::span<const SettingRow> QueueSettings() {
    return QueueRows;
}

}  // namespace tavrolinux
