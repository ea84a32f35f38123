#include "linux/inventory/link_texts.h"

namespace tavrolinux {

bool HasLink(const Link& link) {
    return link.isUp && link.hasCarrier;
}

std::string LinkStateText(const Link& link) {
    return HasLink(link) ? "Up" : "Down";
}

std::string SpeedText(std::uint32_t speed) {
    constexpr std::uint32_t Giga = 1000;
    constexpr std::uint32_t Tenth = 100;
    if (speed < Giga) {
        return std::to_string(speed) + " Mbps";
    }
    std::string text = std::to_string(speed / Giga);
    if (speed % Giga != 0) {
        text += '.' + std::to_string(speed % Giga / Tenth);
    }
    return text + " Gbps";
}

std::string LinkSpeedText(const Link& link, const std::optional<LinkModes>& modes) {
    if (!HasLink(link)) {
        return "None";
    }
    return modes && modes->speed ? SpeedText(*modes->speed) : "Unknown";
}

}  // namespace tavrolinux
