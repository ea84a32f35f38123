// The settings of the link, the address and the frames.
#include <linux/ethtool.h>

#include <array>
#include <charconv>
#include <limits>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "library/text/identifier.h"
#include "library/text/text.h"
#include "linux/ethernet/told_setting.h"
#include "linux/inventory/link_texts.h"
#include "linux/messages/error_texts.h"

namespace tavrolinux {
namespace {

using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::Status;
using tavrolib::WideFromUtf8;

constexpr std::string_view Negotiated = "Auto Negotiation";

bool CanNegotiate(const EthernetDevice& device) {
    return device.linkModes && device.linkModes->modes.contains("Autoneg");
}

// The speeds of the device's modes, or of those that are offered.
std::set<std::uint32_t> SpeedsOf(const LinkModes& link, bool onlyOffered) {
    std::set<std::uint32_t> speeds;
    for (const auto& [name, isOffered] : link.modes) {
        if (const auto speed = SpeedOfMode(name); speed && (isOffered || !onlyOffered)) {
            speeds.insert(*speed);
        }
    }
    return speeds;
}

// A speed is chosen by offering no other, where the device negotiates: some links cannot do
// without. Who has one speed has no choice.
ToldSetting TellSpeed(const EthernetDevice& device) {
    if (!device.linkModes) {
        return NotThere();
    }
    const LinkModes& link = *device.linkModes;
    const auto speeds = SpeedsOf(link, false);
    if (speeds.size() < 2) {
        return NotThere();
    }
    std::vector<std::wstring> texts;
    if (CanNegotiate(device)) {
        texts.push_back(WideFromUtf8(Negotiated));
    }
    for (const std::uint32_t speed : speeds) {
        texts.push_back(WideFromUtf8(SpeedText(speed)));
    }
    std::string value = link.speed ? SpeedText(*link.speed) : UnknownValue;
    if (link.negotiates) {
        const auto offered = SpeedsOf(link, true);
        value = offered.size() == 1 ? SpeedText(*offered.begin()) : std::string(Negotiated);
    }
    return OneOf(std::move(value), texts);
}

Outcome PlanSpeed(const std::string& value, DevicePlan& plan) {
    LinkModes& link = *plan.target.linkModes;
    link.negotiates = CanNegotiate(plan.target);
    for (auto& [name, isOffered] : link.modes) {
        const auto speed = SpeedOfMode(name);
        if (speed && link.negotiates) {
            isOffered = value == Negotiated || SpeedText(*speed) == value;
        } else if (speed && SpeedText(*speed) == value) {
            link.speed = speed;
            link.isFullDuplex = true;
        }
    }
    return Done();
}

ToldSetting TellFlowControl(const EthernetDevice& device) {
    if (!device.pause) {
        return NotThere();
    }
    std::vector<std::wstring> texts(std::begin(tavrolib::Directions),
                                    std::end(tavrolib::Directions));
    if (CanNegotiate(device)) {
        texts.push_back(WideFromUtf8(Negotiated));
    }
    return OneOf(FlowControlText(device.pause), texts);
}

Outcome PlanFlowControl(const std::string& value, DevicePlan& plan) {
    Pause& pause = *plan.target.pause;
    pause.negotiates = value == Negotiated;
    const auto wanted = DirectionsFrom(value);
    pause.receives = pause.negotiates || wanted.receives;
    pause.sends = pause.negotiates || wanted.sends;
    return Done();
}

ToldSetting TellAddress(const EthernetDevice& device) {
    if (!device.link.address) {
        return NotThere();
    }
    const auto assigned = AssignedAddressOf(device.link);
    return {assigned ? MacText(*assigned) : tavrolib::NoAssignedAddress, {}};
}

EthernetAddress AddressFrom(const std::string& text) {
    constexpr int Hexadecimal = 16;
    const std::string digits = tavrolib::NormalIdentifier(text);
    EthernetAddress address{};
    for (std::size_t octet = 0; octet < address.size(); ++octet) {
        const char* const first = digits.data() + 2 * octet;
        std::from_chars(first, first + 2, address.at(octet), Hexadecimal);
    }
    return address;
}

Outcome PlanAddress(const std::string& value, DevicePlan& plan) {
    if (value != "0") {
        plan.target.link.address = AddressFrom(value);
        return Done();
    }
    if (!plan.target.link.permanentAddress) {
        return Refused(Status::SettingValueRefused,
                       L"The interface has no address of its own to go back to.",
                       L"Set it to a locally administered unicast address.",
                       WideFromUtf8(plan.target.link.name));
    }
    plan.target.link.address = plan.target.link.permanentAddress;
    return Done();
}

ToldSetting TellJumboPacket(const EthernetDevice& device) {
    constexpr std::array<std::uint32_t, 3> UsualFrames{1514, 4088, 9014};
    const Link& link = device.link;
    const std::uint32_t largest =
        link.largestMtu == 0 ? std::numeric_limits<std::uint32_t>::max() : link.largestMtu;
    std::set<std::uint32_t> frames;
    for (const std::uint32_t frame : UsualFrames) {
        const std::uint32_t mtu = frame - EthernetHeader;
        if (mtu >= link.smallestMtu && mtu <= largest) {
            frames.insert(frame);
        }
    }
    return OneOf(link.mtu + EthernetHeader, std::move(frames));
}

Outcome PlanJumboPacket(const std::string& value, DevicePlan& plan) {
    plan.target.link.mtu = NumberFrom(value) - EthernetHeader;
    return Done();
}

ToldSetting TellConnector(const EthernetDevice& device) {
    switch (device.connector.value_or(PORT_NONE)) {
        case PORT_TP:
            return Fixed("Twisted Pair");
        case PORT_AUI:
            return Fixed("AUI");
        case PORT_MII:
            return Fixed("MII");
        case PORT_FIBRE:
            return Fixed("Fibre");
        case PORT_BNC:
            return Fixed("BNC");
        case PORT_DA:
            return Fixed("Direct Attach");
        case PORT_OTHER:
            return Fixed("Other");
        default:
            return NotThere();
    }
}

constexpr SettingRow LinkRows[] = {
    {0, TellAddress, PlanAddress, true},
    {1, TellSpeed, PlanSpeed},
    {8, TellFlowControl, PlanFlowControl},
    {9, TellJumboPacket, PlanJumboPacket},
    {21,
     [](const EthernetDevice& device) {
         return device.isEnergyEfficient ? Fixed(SwitchText(*device.isEnergyEfficient))
                                         : NotThere();
     }},
    {29, TellConnector},
};

}  // namespace

std::span<const SettingRow> LinkSettings() {
    return LinkRows;
}

}  // namespace tavrolinux
