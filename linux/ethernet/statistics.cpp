// The counters of Ethernet ports: reading and resetting them.
#include "linux/ethernet/statistics.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "linux/serve/operation.h"

namespace tavrolinux {
namespace {

using tavroapi::EthernetPortStatistics;
using tavroapi::OperationCode;
namespace ethernet_statistics = tavroapi::ethernet_statistics;

struct CounterSources {
    const LinkCounters& link;
    const DeviceCounters& device;
    const std::optional<Pause>& pause;
};

struct PortCounter {
    ethernet_statistics::Position position;
    const char* name;
    std::optional<std::uint64_t> (*read)(const CounterSources& from);
};

template <std::uint64_t LinkCounters::*Counter>
std::optional<std::uint64_t> OfLink(const CounterSources& from) {
    return from.link.*Counter;
}

template <std::optional<std::uint64_t> DeviceCounters::*Counter>
std::optional<std::uint64_t> OfDevice(const CounterSources& from) {
    return from.device.*Counter;
}

template <std::optional<std::uint64_t> DeviceCounters::*Counter,
          std::uint64_t LinkCounters::*Otherwise>
std::optional<std::uint64_t> OfDeviceOrLink(const CounterSources& from) {
    return (from.device.*Counter).value_or(from.link.*Otherwise);
}

template <std::optional<std::uint64_t> Pause::*Counter>
std::optional<std::uint64_t> OfPause(const CounterSources& from) {
    return from.pause ? (*from.pause).*Counter : std::nullopt;
}

std::optional<std::uint64_t> LongFramesOf(const CounterSources& from) {
    return from.device.oversized ? from.device.oversized : from.device.tooLong;
}

// Only where the device counts all that is not unicast.
std::optional<std::uint64_t> Unicast(std::uint64_t all, std::optional<std::uint64_t> multicast,
                                     std::optional<std::uint64_t> broadcast) {
    if (!multicast || !broadcast) {
        return std::nullopt;
    }
    const std::uint64_t others = *multicast + *broadcast;
    return all - std::min(all, others);
}

std::optional<std::uint64_t> UnicastSent(const CounterSources& from) {
    return Unicast(from.link.packetsSent, from.device.multicastSent, from.device.broadcastSent);
}

std::optional<std::uint64_t> UnicastReceived(const CounterSources& from) {
    return Unicast(from.link.packetsReceived, from.device.multicastReceived,
                   from.device.broadcastReceived);
}

constexpr PortCounter PortCounters[] = {
    {ethernet_statistics::FramesSent, "framesSent", OfLink<&LinkCounters::packetsSent>},
    {ethernet_statistics::FramesReceived, "framesReceived", OfLink<&LinkCounters::packetsReceived>},
    {ethernet_statistics::ReceiveErrors, "receiveErrors", OfLink<&LinkCounters::receiveErrors>},
    {ethernet_statistics::TransmitErrors, "transmitErrors", OfLink<&LinkCounters::sendErrors>},
    {ethernet_statistics::SentFramesDropped, "sentFramesDropped",
     OfLink<&LinkCounters::sentDropped>},
    {ethernet_statistics::UnicastFramesSent, "unicastFramesSent", UnicastSent},
    {ethernet_statistics::MulticastFramesSent, "multicastFramesSent",
     OfDevice<&DeviceCounters::multicastSent>},
    {ethernet_statistics::BroadcastFramesSent, "broadcastFramesSent",
     OfDevice<&DeviceCounters::broadcastSent>},
    {ethernet_statistics::UnicastFramesReceived, "unicastFramesReceived", UnicastReceived},
    {ethernet_statistics::MulticastFramesReceived, "multicastFramesReceived",
     OfDeviceOrLink<&DeviceCounters::multicastReceived, &LinkCounters::multicastReceived>},
    {ethernet_statistics::BroadcastFramesReceived, "broadcastFramesReceived",
     OfDevice<&DeviceCounters::broadcastReceived>},
    {ethernet_statistics::ExcessiveCollisions, "excessiveCollisions",
     OfDeviceOrLink<&DeviceCounters::excessiveCollisions, &LinkCounters::aborted>},
    {ethernet_statistics::AlignmentErrors, "alignmentErrors",
     OfDeviceOrLink<&DeviceCounters::alignmentErrors, &LinkCounters::alignmentErrors>},
    {ethernet_statistics::DeferredFrames, "deferredFrames", OfDevice<&DeviceCounters::deferred>},
    {ethernet_statistics::BytesReceived, "bytesReceived", OfLink<&LinkCounters::bytesReceived>},
    {ethernet_statistics::BytesSent, "bytesSent", OfLink<&LinkCounters::bytesSent>},
    {ethernet_statistics::ChecksumErrors, "checksumErrors",
     OfDeviceOrLink<&DeviceCounters::checksumErrors, &LinkCounters::checksumErrors>},
    {ethernet_statistics::SingleCollisions, "singleCollisions",
     OfDevice<&DeviceCounters::singleCollisions>},
    {ethernet_statistics::Fragments, "fragments", OfDevice<&DeviceCounters::fragments>},
    {ethernet_statistics::JabberFrames, "jabberFrames", OfDevice<&DeviceCounters::jabbers>},
    {ethernet_statistics::LongFrames, "longFrames", LongFramesOf},
    {ethernet_statistics::FramesWithoutBuffer, "framesWithoutBuffer",
     OfLink<&LinkCounters::missed>},
    {ethernet_statistics::LateCollisions, "lateCollisions",
     OfDeviceOrLink<&DeviceCounters::lateCollisions, &LinkCounters::windowErrors>},
    {ethernet_statistics::ShortFrames, "shortFrames", OfDevice<&DeviceCounters::undersized>},
    {ethernet_statistics::ReceivedFramesDropped, "receivedFramesDropped",
     OfLink<&LinkCounters::receivedDropped>},
    {ethernet_statistics::PauseFramesSent, "pauseFramesSent", OfPause<&Pause::framesSent>},
    {ethernet_statistics::PauseFramesReceived, "pauseFramesReceived",
     OfPause<&Pause::framesReceived>},
};

// The counters that the state calls so.
constexpr const char* BaselineFamily = "ethernet";

struct CountedPort {
    Link link;
    NamedCounters counters;
};

CountedPort ReadCounters(const Place& at) {
    Socket route(NETLINK_ROUTE);
    Ethtool ethtool;
    CountedPort port{ReadLink(route, at.interface.index), {}};
    port.counters = CountersOf(port.link.counters, ReadDeviceCounters(ethtool, port.link),
                               ReadPause(ethtool, port.link));
    return port;
}

// The baseline of the interface; null where it has none, or that is of another interface that had
// its name.
const Baseline* BaselineOf(const State& state, const Link& link) {
    const auto kept = state.interfaces.find(link.name);
    if (kept == state.interfaces.end()) {
        return nullptr;
    }
    const auto baseline = kept->second.baselines.find(BaselineFamily);
    return baseline != kept->second.baselines.end() && baseline->second.interfaceIndex == link.index
               ? &baseline->second
               : nullptr;
}

Outcome ReadStatistics(const Place& at, tavroapi::StatisticsFlag /*flag*/,
                       EthernetPortStatistics& record) {
    const State state = at.state.Read();
    const CountedPort port = ReadCounters(at);
    const Baseline* const baseline = BaselineOf(state, port.link);
    const auto since =
        baseline != nullptr ? CountedSince(baseline->counters, port.counters) : port.counters;
    if (!since) {
        // Once the counters have passed it again, nobody could tell that it is not theirs.
        at.state.Change([&port](State& kept) {
            kept.interfaces[port.link.name].baselines.erase(BaselineFamily);
        });
    }
    TellCounters(since.value_or(port.counters), record);
    return Done();
}

Outcome ResetStatistics(const Place& at, tavroapi::StatisticsFlag /*flag*/,
                        EthernetPortStatistics& record) {
    NamedCounters counters;
    at.state.Change([&](State& state) {
        const CountedPort port = ReadCounters(at);
        counters = port.counters;
        state.interfaces[port.link.name].baselines[BaselineFamily] = {port.link.index, counters};
    });
    for (auto& [name, count] : counters) {
        count = 0;
    }
    TellCounters(counters, record);
    return Done();
}

}  // namespace

NamedCounters CountersOf(const LinkCounters& link, const DeviceCounters& device,
                         const std::optional<Pause>& pause) {
    NamedCounters counters;
    for (const PortCounter& counter : PortCounters) {
        if (const auto count = counter.read({link, device, pause})) {
            counters.emplace(counter.name, *count);
        }
    }
    return counters;
}

std::optional<NamedCounters> CountedSince(const NamedCounters& baseline,
                                          const NamedCounters& counters) {
    NamedCounters since = counters;
    for (auto& [name, count] : since) {
        if (const auto before = baseline.find(name); before != baseline.end()) {
            if (count < before->second) {
                return std::nullopt;
            }
            count -= before->second;
        }
    }
    return since;
}

void TellCounters(const NamedCounters& counters, EthernetPortStatistics& record) {
    for (const PortCounter& counter : PortCounters) {
        const auto count = counters.find(counter.name);
        record.texts.at(counter.position) =
            count == counters.end() ? std::string() : std::to_string(count->second);
    }
}

std::span<const Operation> EthernetStatisticsOperations() {
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ReadEthernetStatistics, FunctionKind::Ethernet, ReadStatistics>(),
        OnFunction<OperationCode::ResetEthernetStatistics, FunctionKind::Ethernet,
                   ResetStatistics>()};
    return Rows;
}

}  // namespace tavrolinux
