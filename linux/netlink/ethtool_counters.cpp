// The counters that devices tell in groups, each of which follows a standard.
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>

#include "linux/netlink/ethtool_device.h"

namespace tavrolinux {
namespace {

constexpr EthtoolSubject GroupedCounters{ETHTOOL_MSG_STATS_GET, 0, ETHTOOL_A_STATS_HEADER,
                                         "the counters"};

struct GroupedCounter {
    std::uint64_t group;
    int number;
    std::optional<std::uint64_t> DeviceCounters::*place;
};

constexpr GroupedCounter CounterRows[] = {
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL,
     &DeviceCounters::singleCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, &DeviceCounters::checksumErrors},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_7_ALIGN_ERR, &DeviceCounters::alignmentErrors},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_9_TX_DEFER, &DeviceCounters::deferred},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_10_LATE_COL, &DeviceCounters::lateCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_11_XS_COL,
     &DeviceCounters::excessiveCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_18_TX_MCAST, &DeviceCounters::multicastSent},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_19_TX_BCAST, &DeviceCounters::broadcastSent},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_21_RX_MCAST,
     &DeviceCounters::multicastReceived},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_22_RX_BCAST,
     &DeviceCounters::broadcastReceived},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_25_TOO_LONG_ERR, &DeviceCounters::tooLong},
    {ETHTOOL_STATS_RMON, ETHTOOL_A_STATS_RMON_UNDERSIZE, &DeviceCounters::undersized},
    {ETHTOOL_STATS_RMON, ETHTOOL_A_STATS_RMON_OVERSIZE, &DeviceCounters::oversized},
    {ETHTOOL_STATS_RMON, ETHTOOL_A_STATS_RMON_FRAG, &DeviceCounters::fragments},
    {ETHTOOL_STATS_RMON, ETHTOOL_A_STATS_RMON_JABBER, &DeviceCounters::jabbers},
};

void TakeCounter(std::uint64_t group, int number, std::uint64_t count, DeviceCounters& counters) {
    for (const GroupedCounter& row : CounterRows) {
        if (row.group == group && row.number == number) {
            counters.*row.place = count;
        }
    }
}

}  // namespace

void TakeCounterGroup(const nlattr& group, DeviceCounters& counters) {
    std::uint64_t id = 0;
    ForEachAttribute(BytesOf(group), [&](int type, const nlattr& attribute) {
        if (type == ETHTOOL_A_STATS_GRP_ID) {
            id = NumberOf(attribute);
        } else if (type == ETHTOOL_A_STATS_GRP_STAT) {
            ForEachAttribute(BytesOf(attribute), [&](int number, const nlattr& counter) {
                TakeCounter(id, number, NumberOf(counter), counters);
            });
        }
    });
}

DeviceCounters ReadDeviceCounters(Ethtool& ethtool, const Link& link) {
    DeviceCounters counters;
    ethtool.Read(
        GroupedCounters, link,
        [&counters](int type, const nlattr& attribute) {
            if (type == ETHTOOL_A_STATS_GRP) {
                TakeCounterGroup(attribute, counters);
            }
        },
        0,
        [](Message& message) {
            PutBits(message, ETHTOOL_A_STATS_GROUPS, {{"eth-mac", true}, {"rmon", true}});
        });
    return counters;
}

}  // namespace tavrolinux
