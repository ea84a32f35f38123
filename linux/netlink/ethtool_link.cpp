#include "linux/netlink/ethtool_link.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>

#include <charconv>

namespace tavrolinux {
namespace {

constexpr EthtoolSubject Modes{ETHTOOL_MSG_LINKMODES_GET, ETHTOOL_MSG_LINKMODES_SET,
                               ETHTOOL_A_LINKMODES_HEADER, "the link modes"};
constexpr EthtoolSubject Pausing{ETHTOOL_MSG_PAUSE_GET, ETHTOOL_MSG_PAUSE_SET,
                                 ETHTOOL_A_PAUSE_HEADER, "the flow control"};
constexpr EthtoolSubject LinkInformation{ETHTOOL_MSG_LINKINFO_GET, 0, ETHTOOL_A_LINKINFO_HEADER,
                                         "the connector"};
constexpr EthtoolSubject EnergyEfficiency{ETHTOOL_MSG_EEE_GET, 0, ETHTOOL_A_EEE_HEADER,
                                          "the energy efficiency"};

constexpr auto UnknownSpeed = static_cast<std::uint32_t>(SPEED_UNKNOWN);
constexpr std::uint64_t NotCounted = ~std::uint64_t{0};

std::optional<std::uint64_t> CountOf(const nlattr& attribute) {
    const std::uint64_t count = NumberOf(attribute);
    return count == NotCounted ? std::nullopt : std::optional(count);
}

}  // namespace

std::optional<LinkModes> ReadLinkModes(Ethtool& ethtool, const Link& link) {
    LinkModes told;
    const bool isTold = ethtool.Read(Modes, link, [&told](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_LINKMODES_AUTONEG) {
            told.negotiates = NumberOf(attribute) == AUTONEG_ENABLE;
        } else if (type == ETHTOOL_A_LINKMODES_OURS) {
            told.modes = BitsOf(attribute);
        } else if (type == ETHTOOL_A_LINKMODES_SPEED) {
            const auto speed = static_cast<std::uint32_t>(NumberOf(attribute));
            if (speed != 0 && speed != UnknownSpeed) {
                told.speed = speed;
            }
        } else if (type == ETHTOOL_A_LINKMODES_DUPLEX) {
            told.isFullDuplex = NumberOf(attribute) == DUPLEX_FULL;
        }
    });
    return isTold ? std::optional(std::move(told)) : std::nullopt;
}

void WriteLinkModes(Ethtool& ethtool, const Link& link, const LinkModes& wanted) {
    ethtool.Write(Modes, link, [&wanted](Message& message) {
        message.PutNumber8(ETHTOOL_A_LINKMODES_AUTONEG, wanted.negotiates ? 1 : 0);
        if (wanted.negotiates) {
            NamedBits offered;
            for (const auto& [name, isOffered] : wanted.modes) {
                if (SpeedOfMode(name)) {
                    offered.emplace(name, isOffered);
                }
            }
            PutBits(message, ETHTOOL_A_LINKMODES_OURS, offered);
        } else if (wanted.speed) {
            message.PutNumber32(ETHTOOL_A_LINKMODES_SPEED, *wanted.speed);
            message.PutNumber8(ETHTOOL_A_LINKMODES_DUPLEX,
                               wanted.isFullDuplex ? DUPLEX_FULL : DUPLEX_HALF);
        }
    });
}

std::optional<std::uint32_t> SpeedOfMode(std::string_view name) {
    std::uint32_t speed = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data(), end, speed);
    const std::string_view rest(stop, static_cast<std::size_t>(end - stop));
    return error == std::errc() && rest.starts_with("base") ? std::optional(speed) : std::nullopt;
}

std::optional<Pause> ReadPause(Ethtool& ethtool, const Link& link) {
    Pause told;
    const auto takeCounter = [&told](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_PAUSE_STAT_RX_FRAMES) {
            told.framesReceived = CountOf(attribute);
        } else if (type == ETHTOOL_A_PAUSE_STAT_TX_FRAMES) {
            told.framesSent = CountOf(attribute);
        }
    };
    const auto take = [&](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_PAUSE_AUTONEG) {
            told.negotiates = NumberOf(attribute) != 0;
        } else if (type == ETHTOOL_A_PAUSE_RX) {
            told.receives = NumberOf(attribute) != 0;
        } else if (type == ETHTOOL_A_PAUSE_TX) {
            told.sends = NumberOf(attribute) != 0;
        } else if (type == ETHTOOL_A_PAUSE_STATS) {
            ForEachAttribute(BytesOf(attribute), takeCounter);
        }
    };
    const bool isTold = ethtool.Read(Pausing, link, take, ETHTOOL_FLAG_STATS);
    return isTold ? std::optional(told) : std::nullopt;
}

void WritePause(Ethtool& ethtool, const Link& link, const Pause& wanted) {
    ethtool.Write(Pausing, link, [&wanted](Message& message) {
        message.PutNumber8(ETHTOOL_A_PAUSE_AUTONEG, wanted.negotiates ? 1 : 0);
        message.PutNumber8(ETHTOOL_A_PAUSE_RX, wanted.receives ? 1 : 0);
        message.PutNumber8(ETHTOOL_A_PAUSE_TX, wanted.sends ? 1 : 0);
    });
}

std::optional<std::uint8_t> ReadConnector(Ethtool& ethtool, const Link& link) {
    std::optional<std::uint8_t> connector;
    ethtool.Read(LinkInformation, link, [&connector](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_LINKINFO_PORT) {
            connector = static_cast<std::uint8_t>(NumberOf(attribute));
        }
    });
    return connector;
}

std::optional<bool> ReadEnergyEfficiency(Ethtool& ethtool, const Link& link) {
    std::optional<bool> isOn;
    ethtool.Read(EnergyEfficiency, link, [&isOn](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_EEE_ENABLED) {
            isOn = NumberOf(attribute) != 0;
        }
    });
    return isOn;
}

}  // namespace tavrolinux
