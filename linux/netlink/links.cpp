#include "linux/netlink/links.h"

#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstring>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

std::optional<EthernetAddress> AddressFrom(const nlattr& attribute) {
    const auto bytes = BytesOf(attribute);
    EthernetAddress address{};
    if (bytes.size() != address.size()) {
        return std::nullopt;
    }
    std::ranges::copy(bytes, address.begin());
    return address;
}

LinkCounters CountersFrom(const nlattr& attribute) {
    rtnl_link_stats64 told{};
    const auto bytes = BytesOf(attribute);
    std::memcpy(&told, bytes.data(), std::min(bytes.size(), sizeof told));
    LinkCounters counters;
    counters.packetsReceived = told.rx_packets;
    counters.packetsSent = told.tx_packets;
    counters.bytesReceived = told.rx_bytes;
    counters.bytesSent = told.tx_bytes;
    counters.receiveErrors = told.rx_errors;
    counters.sendErrors = told.tx_errors;
    counters.receivedDropped = told.rx_dropped;
    counters.sentDropped = told.tx_dropped;
    counters.multicastReceived = told.multicast;
    counters.collisions = told.collisions;
    counters.lengthErrors = told.rx_length_errors;
    counters.overruns = told.rx_over_errors;
    counters.checksumErrors = told.rx_crc_errors;
    counters.alignmentErrors = told.rx_frame_errors;
    counters.fifoErrors = told.rx_fifo_errors;
    counters.missed = told.rx_missed_errors;
    counters.aborted = told.tx_aborted_errors;
    counters.carrierErrors = told.tx_carrier_errors;
    counters.sendFifoErrors = told.tx_fifo_errors;
    counters.heartbeatErrors = told.tx_heartbeat_errors;
    counters.windowErrors = told.tx_window_errors;
    return counters;
}

void TakeAttribute(int type, const nlattr& attribute, Link& link) {
    switch (type) {
        case IFLA_IFNAME:
            link.name = TextOf(attribute);
            break;
        case IFLA_ADDRESS:
            link.address = AddressFrom(attribute);
            break;
        case IFLA_PERM_ADDRESS:
            link.permanentAddress = AddressFrom(attribute);
            break;
        case IFLA_MASTER:
            link.master = static_cast<std::int32_t>(NumberOf(attribute));
            break;
        case IFLA_MTU:
            link.mtu = static_cast<std::uint32_t>(NumberOf(attribute));
            break;
        case IFLA_MIN_MTU:
            link.smallestMtu = static_cast<std::uint32_t>(NumberOf(attribute));
            break;
        case IFLA_MAX_MTU:
            link.largestMtu = static_cast<std::uint32_t>(NumberOf(attribute));
            break;
        case IFLA_CARRIER:
            link.hasCarrier = NumberOf(attribute) != 0;
            break;
        case IFLA_NUM_TX_QUEUES:
            link.sendQueues = static_cast<std::uint32_t>(NumberOf(attribute));
            break;
        case IFLA_NUM_RX_QUEUES:
            link.receiveQueues = static_cast<std::uint32_t>(NumberOf(attribute));
            break;
        case IFLA_STATS64:
            link.counters = CountersFrom(attribute);
            break;
        case IFLA_LINKINFO:
            ForEachAttribute(BytesOf(attribute), [&link](int inner, const nlattr& told) {
                if (inner == IFLA_INFO_KIND) {
                    link.kind = TextOf(told);
                }
            });
            break;
        default:
            break;
    }
}

Link LinkFrom(const nlmsghdr& message) {
    const auto header = HeaderOf<ifinfomsg>(message);
    Link link;
    link.index = header.ifi_index;
    link.hardwareType = header.ifi_type;
    link.isUp = (header.ifi_flags & IFF_UP) != 0;
    ForEachAttribute(
        AttributesOf(message, sizeof header),
        [&link](int type, const nlattr& attribute) { TakeAttribute(type, attribute, link); });
    return link;
}

Message NewRequest(int type, int flags, std::int32_t index) {
    Message message(type, flags);
    ifinfomsg header{};
    header.ifi_family = AF_UNSPEC;
    header.ifi_index = index;
    message.Append(header);
    return message;
}

}  // namespace

std::vector<Link> ReadLinks(Socket& route) {
    std::vector<Link> links;
    route.Request(
        NewRequest(RTM_GETLINK, NLM_F_DUMP, 0), "listing the interfaces",
        [&links](const nlmsghdr& message) { links.push_back(LinkFrom(message)); },
        [&links] { links.clear(); });
    std::ranges::sort(links, {}, &Link::index);
    return links;
}

Link ReadLink(Socket& route, std::int32_t index) {
    std::optional<Link> link;
    route.Request(NewRequest(RTM_GETLINK, 0, index), "reading the interface",
                  [&link](const nlmsghdr& message) { link = LinkFrom(message); });
    if (!link) {
        throw SystemFailure(ENODEV, "reading the interface");
    }
    return *link;
}

void SetMtu(Socket& route, const Link& link, std::uint32_t mtu) {
    Message message = NewRequest(RTM_NEWLINK, 0, link.index);
    message.PutNumber32(IFLA_MTU, mtu);
    route.Request(message, "setting the MTU of " + link.name);
}

void SetAddress(Socket& route, const Link& link, const EthernetAddress& address) {
    Message message = NewRequest(RTM_NEWLINK, 0, link.index);
    message.Put(IFLA_ADDRESS, address);
    route.Request(message, "setting the hardware address of " + link.name);
}

}  // namespace tavrolinux
