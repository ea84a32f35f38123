#include "linux/netlink/ethtool_device.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>

namespace tavrolinux {
namespace {

constexpr EthtoolSubject DeviceFeatures{ETHTOOL_MSG_FEATURES_GET, ETHTOOL_MSG_FEATURES_SET,
                                        ETHTOOL_A_FEATURES_HEADER, "the features"};
constexpr EthtoolSubject Buffers{ETHTOOL_MSG_RINGS_GET, ETHTOOL_MSG_RINGS_SET,
                                 ETHTOOL_A_RINGS_HEADER, "the buffers"};
constexpr EthtoolSubject Queues{ETHTOOL_MSG_CHANNELS_GET, ETHTOOL_MSG_CHANNELS_SET,
                                ETHTOOL_A_CHANNELS_HEADER, "the queues"};
constexpr EthtoolSubject Moderation{ETHTOOL_MSG_COALESCE_GET, ETHTOOL_MSG_COALESCE_SET,
                                    ETHTOOL_A_COALESCE_HEADER, "the interrupt moderation"};
constexpr EthtoolSubject WakeUp{ETHTOOL_MSG_WOL_GET, ETHTOOL_MSG_WOL_SET, ETHTOOL_A_WOL_HEADER,
                                "the wake-up"};
constexpr EthtoolSubject TimeStamping{ETHTOOL_MSG_TSINFO_GET, 0, ETHTOOL_A_TSINFO_HEADER,
                                      "the time stamping"};

// An attribute that has a number, and where that belongs.
template <class Values>
struct NumberRow {
    int attribute;
    std::uint32_t& (*place)(Values& values);
};

template <class Values, std::size_t Count>
std::optional<Values> ReadNumbers(Ethtool& ethtool, const EthtoolSubject& subject, const Link& link,
                                  const NumberRow<Values> (&rows)[Count]) {
    Values values;
    const bool isTold = ethtool.Read(subject, link, [&](int type, const nlattr& attribute) {
        for (const NumberRow<Values>& row : rows) {
            if (row.attribute == type) {
                row.place(values) = static_cast<std::uint32_t>(NumberOf(attribute));
            }
        }
    });
    return isTold ? std::optional(values) : std::nullopt;
}

constexpr NumberRow<Rings> RingRows[] = {
    {ETHTOOL_A_RINGS_RX, [](Rings& rings) -> std::uint32_t& { return rings.receive.present; }},
    {ETHTOOL_A_RINGS_RX_MAX, [](Rings& rings) -> std::uint32_t& { return rings.receive.largest; }},
    {ETHTOOL_A_RINGS_TX, [](Rings& rings) -> std::uint32_t& { return rings.send.present; }},
    {ETHTOOL_A_RINGS_TX_MAX, [](Rings& rings) -> std::uint32_t& { return rings.send.largest; }},
};

constexpr NumberRow<Channels> ChannelRows[] = {
    {ETHTOOL_A_CHANNELS_RX_COUNT,
     [](Channels& channels) -> std::uint32_t& { return channels.receive.present; }},
    {ETHTOOL_A_CHANNELS_RX_MAX,
     [](Channels& channels) -> std::uint32_t& { return channels.receive.largest; }},
    {ETHTOOL_A_CHANNELS_TX_COUNT,
     [](Channels& channels) -> std::uint32_t& { return channels.send.present; }},
    {ETHTOOL_A_CHANNELS_TX_MAX,
     [](Channels& channels) -> std::uint32_t& { return channels.send.largest; }},
    {ETHTOOL_A_CHANNELS_COMBINED_COUNT,
     [](Channels& channels) -> std::uint32_t& { return channels.combined.present; }},
    {ETHTOOL_A_CHANNELS_COMBINED_MAX,
     [](Channels& channels) -> std::uint32_t& { return channels.combined.largest; }},
};

void PutWhereThereAreAny(Message& message, int attribute, const Amount& amount) {
    if (amount.largest != 0) {
        message.PutNumber32(attribute, amount.present);
    }
}

}  // namespace

Features ReadFeatures(Ethtool& ethtool, const Link& link) {
    Features features;
    NamedBits fixed;
    ethtool.Read(DeviceFeatures, link, [&](int type, const nlattr& attribute) {
        switch (type) {
            case ETHTOOL_A_FEATURES_HW:
                for (const auto& [name, canChange] : BitsOf(attribute)) {
                    features[name].canChange = canChange;
                }
                break;
            case ETHTOOL_A_FEATURES_WANTED:
                for (const auto& [name, isWanted] : BitsOf(attribute)) {
                    features[name].isWanted = isWanted;
                }
                break;
            case ETHTOOL_A_FEATURES_ACTIVE:
                for (const auto& [name, isActive] : BitsOf(attribute)) {
                    features[name].isActive = isActive;
                }
                break;
            case ETHTOOL_A_FEATURES_NOCHANGE:
                fixed = BitsOf(attribute);
                break;
            default:
                break;
        }
    });
    for (const auto& [name, isFixed] : fixed) {
        features[name].canChange = features[name].canChange && !isFixed;
    }
    return features;
}

void WriteFeatures(Ethtool& ethtool, const Link& link, const NamedBits& wanted) {
    ethtool.Write(DeviceFeatures, link, [&wanted](Message& message) {
        PutBits(message, ETHTOOL_A_FEATURES_WANTED, wanted);
    });
}

std::optional<Rings> ReadRings(Ethtool& ethtool, const Link& link) {
    return ReadNumbers(ethtool, Buffers, link, RingRows);
}

void WriteRings(Ethtool& ethtool, const Link& link, const Rings& wanted) {
    ethtool.Write(Buffers, link, [&wanted](Message& message) {
        PutWhereThereAreAny(message, ETHTOOL_A_RINGS_RX, wanted.receive);
        PutWhereThereAreAny(message, ETHTOOL_A_RINGS_TX, wanted.send);
    });
}

std::optional<Channels> ReadChannels(Ethtool& ethtool, const Link& link) {
    return ReadNumbers(ethtool, Queues, link, ChannelRows);
}

void WriteChannels(Ethtool& ethtool, const Link& link, const Channels& wanted) {
    ethtool.Write(Queues, link, [&wanted](Message& message) {
        PutWhereThereAreAny(message, ETHTOOL_A_CHANNELS_RX_COUNT, wanted.receive);
        PutWhereThereAreAny(message, ETHTOOL_A_CHANNELS_TX_COUNT, wanted.send);
        PutWhereThereAreAny(message, ETHTOOL_A_CHANNELS_COMBINED_COUNT, wanted.combined);
    });
}

std::optional<Coalescing> ReadCoalescing(Ethtool& ethtool, const Link& link) {
    Coalescing told;
    const bool isTold = ethtool.Read(Moderation, link, [&told](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_COALESCE_USE_ADAPTIVE_RX) {
            told.isAdaptive = NumberOf(attribute) != 0;
        } else if (type == ETHTOOL_A_COALESCE_RX_USECS) {
            told.receiveDelay = static_cast<std::uint32_t>(NumberOf(attribute));
        }
    });
    return isTold ? std::optional(told) : std::nullopt;
}

void WriteCoalescing(Ethtool& ethtool, const Link& link, const Coalescing& wanted) {
    ethtool.Write(Moderation, link, [&wanted](Message& message) {
        if (wanted.isAdaptive) {
            message.PutNumber8(ETHTOOL_A_COALESCE_USE_ADAPTIVE_RX, *wanted.isAdaptive ? 1 : 0);
        }
        if (wanted.receiveDelay) {
            message.PutNumber32(ETHTOOL_A_COALESCE_RX_USECS, *wanted.receiveDelay);
        }
    });
}

std::optional<NamedBits> ReadWakeUp(Ethtool& ethtool, const Link& link) {
    std::optional<NamedBits> modes;
    ethtool.Read(WakeUp, link, [&modes](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_WOL_MODES) {
            modes = BitsOf(attribute);
        }
    });
    return modes;
}

void WriteWakeUp(Ethtool& ethtool, const Link& link, const NamedBits& wanted) {
    ethtool.Write(WakeUp, link,
                  [&wanted](Message& message) { PutBits(message, ETHTOOL_A_WOL_MODES, wanted); });
}

NamedBits ReadTimeStamping(Ethtool& ethtool, const Link& link) {
    NamedBits stampers;
    ethtool.Read(TimeStamping, link, [&stampers](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_TSINFO_TIMESTAMPING) {
            stampers = BitsOf(attribute);
        }
    });
    return stampers;
}

}  // namespace tavrolinux
