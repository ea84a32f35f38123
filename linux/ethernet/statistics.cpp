// The counters of Ethernet ports: reading and resetting them.
#include "linux/ethernet/statistics.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "linux/ethernet/baselines.h"
#include "linux/serve/operation.h"
#include "linux/system/failure.h"
#include "linux/system/network.h"

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

// A counter of one of the sources, and its name.
struct CounterSource {
    const char* name = nullptr;
    std::optional<std::uint64_t> (*read)(const CounterSources& from) = nullptr;
};

struct PortCounter {
    ethernet_statistics::Position position{};
    CounterSource source;
    CounterSource otherwise{};  // where the first is not counted
};

template <std::uint64_t LinkCounters::*Counter>
std::optional<std::uint64_t> OfLink(const CounterSources& from) {
    return from.link.*Counter;
}

template <std::optional<std::uint64_t> DeviceCounters::*Counter>
std::optional<std::uint64_t> OfDevice(const CounterSources& from) {
    return from.device.*Counter;
}

template <std::optional<std::uint64_t> Pause::*Counter>
std::optional<std::uint64_t> OfPause(const CounterSources& from) {
    return from.pause ? (*from.pause).*Counter : std::nullopt;
}

constexpr PortCounter PortCounters[] = {
    {ethernet_statistics::FramesSent, {"link.packetsSent", OfLink<&LinkCounters::packetsSent>}},
    {ethernet_statistics::FramesReceived,
     {"link.packetsReceived", OfLink<&LinkCounters::packetsReceived>}},
    {ethernet_statistics::ReceiveErrors,
     {"link.receiveErrors", OfLink<&LinkCounters::receiveErrors>}},
    {ethernet_statistics::TransmitErrors, {"link.sendErrors", OfLink<&LinkCounters::sendErrors>}},
    {ethernet_statistics::SentFramesDropped,
     {"link.sentDropped", OfLink<&LinkCounters::sentDropped>}},
    {ethernet_statistics::MulticastFramesSent,
     {"device.multicastSent", OfDevice<&DeviceCounters::multicastSent>}},
    {ethernet_statistics::BroadcastFramesSent,
     {"device.broadcastSent", OfDevice<&DeviceCounters::broadcastSent>}},
    {ethernet_statistics::MulticastFramesReceived,
     {"device.multicastReceived", OfDevice<&DeviceCounters::multicastReceived>},
     {"link.multicastReceived", OfLink<&LinkCounters::multicastReceived>}},
    {ethernet_statistics::BroadcastFramesReceived,
     {"device.broadcastReceived", OfDevice<&DeviceCounters::broadcastReceived>}},
    {ethernet_statistics::ExcessiveCollisions,
     {"device.excessiveCollisions", OfDevice<&DeviceCounters::excessiveCollisions>},
     {"link.aborted", OfLink<&LinkCounters::aborted>}},
    {ethernet_statistics::AlignmentErrors,
     {"device.alignmentErrors", OfDevice<&DeviceCounters::alignmentErrors>},
     {"link.alignmentErrors", OfLink<&LinkCounters::alignmentErrors>}},
    {ethernet_statistics::DeferredFrames, {"device.deferred", OfDevice<&DeviceCounters::deferred>}},
    {ethernet_statistics::BytesReceived,
     {"link.bytesReceived", OfLink<&LinkCounters::bytesReceived>}},
    {ethernet_statistics::BytesSent, {"link.bytesSent", OfLink<&LinkCounters::bytesSent>}},
    {ethernet_statistics::ChecksumErrors,
     {"device.checksumErrors", OfDevice<&DeviceCounters::checksumErrors>},
     {"link.checksumErrors", OfLink<&LinkCounters::checksumErrors>}},
    {ethernet_statistics::SingleCollisions,
     {"device.singleCollisions", OfDevice<&DeviceCounters::singleCollisions>}},
    {ethernet_statistics::Fragments, {"device.fragments", OfDevice<&DeviceCounters::fragments>}},
    {ethernet_statistics::JabberFrames, {"device.jabbers", OfDevice<&DeviceCounters::jabbers>}},
    {ethernet_statistics::LongFrames,
     {"device.oversized", OfDevice<&DeviceCounters::oversized>},
     {"device.tooLong", OfDevice<&DeviceCounters::tooLong>}},
    {ethernet_statistics::FramesWithoutBuffer, {"link.missed", OfLink<&LinkCounters::missed>}},
    {ethernet_statistics::LateCollisions,
     {"device.lateCollisions", OfDevice<&DeviceCounters::lateCollisions>},
     {"link.windowErrors", OfLink<&LinkCounters::windowErrors>}},
    {ethernet_statistics::ShortFrames,
     {"device.undersized", OfDevice<&DeviceCounters::undersized>}},
    {ethernet_statistics::ReceivedFramesDropped,
     {"link.receivedDropped", OfLink<&LinkCounters::receivedDropped>}},
    {ethernet_statistics::PauseFramesSent, {"pause.framesSent", OfPause<&Pause::framesSent>}},
    {ethernet_statistics::PauseFramesReceived,
     {"pause.framesReceived", OfPause<&Pause::framesReceived>}},
};

// Of frames to single stations nobody tells the number, but that of all and of the others.
struct UnicastCounter {
    ethernet_statistics::Position position;
    const char* all;
    const char* multicast;
    const char* broadcast;
};

constexpr UnicastCounter UnicastCounters[] = {
    {ethernet_statistics::UnicastFramesSent, "link.packetsSent", "device.multicastSent",
     "device.broadcastSent"},
    {ethernet_statistics::UnicastFramesReceived, "link.packetsReceived", "device.multicastReceived",
     "device.broadcastReceived"},
};

std::optional<std::uint64_t> CountOf(const NamedCounters& counters, const char* name) {
    const auto found = name != nullptr ? counters.find(name) : counters.end();
    return found == counters.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::uint64_t> Unicast(const NamedCounters& counters, const UnicastCounter& row) {
    const auto all = CountOf(counters, row.all);
    const auto multicast = CountOf(counters, row.multicast);
    const auto broadcast = CountOf(counters, row.broadcast);
    if (!all || !multicast || !broadcast) {
        return std::nullopt;
    }
    return *all - std::min(*all, *multicast + *broadcast);
}

struct CountedPort {
    Link link;
    NamedCounters counters;
};

// The device is asked first, so that no frame is counted as one of the others before it is counted
// at all.
CountedPort ReadCounters(Socket& route, const Place& at) {
    Ethtool ethtool;
    CountedPort port{ReadLink(route, at.interface.index), {}};
    const DeviceCounters device = ReadDeviceCounters(ethtool, port.link);
    const std::optional<Pause> pause = ReadPause(ethtool, port.link);
    port.link = ReadLink(route, at.interface.index);
    port.counters = CountersOf(port.link.counters, device, pause);
    return port;
}

// Once the counters have passed it again, nobody could tell that it is not theirs. But the counters
// are known, whether it can be dropped or not.
void TryToDropBaseline(const StateStore& store, const InterfaceNumber& number) {
    try {
        store.Change([&number](State& state) { DropBaseline(state, number); });
    } catch (const SystemFailure&) {
        return;
    } catch (const StateFailure&) {
        return;
    }
}

InterfaceNumber NumberOfPresent(const Place& at) {
    return {at.interface.index, NetworkOfThisProcess(at.machine.SystemRoots())};
}

// Nothing where there is no such interface.
std::optional<std::string> NameOfPresent(Socket& route, const Baseline& baseline,
                                         std::uint32_t network) {
    if (baseline.number.network != network) {
        return std::nullopt;
    }
    try {
        return ReadLink(route, baseline.number.index).name;
    } catch (const SystemFailure& failure) {
        if (!failure.IsGone()) {
            throw;
        }
        return std::nullopt;
    }
}

Outcome ReadStatistics(const Place& at, tavroapi::StatisticsFlag /*flag*/,
                       EthernetPortStatistics& record) {
    const State state = at.state.Read();
    Socket route(NETLINK_ROUTE);
    const CountedPort port = ReadCounters(route, at);
    const InterfaceNumber number = NumberOfPresent(at);
    const Baseline* const baseline = FindBaseline(state, number);
    std::optional<NamedCounters> since = port.counters;
    if (baseline != nullptr) {
        since = baseline->address == at.interface.key
                    ? CountedSince(baseline->counters, port.counters)
                    : std::nullopt;
    }
    if (!since) {
        TryToDropBaseline(at.state, number);
    }
    TellCounters(since.value_or(port.counters), record);
    return Done();
}

Outcome ResetStatistics(const Place& at, tavroapi::StatisticsFlag /*flag*/,
                        EthernetPortStatistics& record) {
    NamedCounters counters;
    Socket route(NETLINK_ROUTE);
    at.state.Change([&](State& state) {
        const CountedPort port = ReadCounters(route, at);
        counters = port.counters;
        const InterfaceNumber number = NumberOfPresent(at);
        KeepBaseline(state, port.link.name, {number, at.interface.key, counters},
                     [&](const Baseline& baseline) {
                         return NameOfPresent(route, baseline, number.network);
                     });
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
    const CounterSources from{link, device, pause};
    NamedCounters counters;
    for (const PortCounter& counter : PortCounters) {
        for (const CounterSource& source : {counter.source, counter.otherwise}) {
            const auto count = source.read != nullptr ? source.read(from) : std::nullopt;
            if (count) {
                counters.emplace(source.name, *count);
            }
        }
    }
    return counters;
}

std::optional<NamedCounters> CountedSince(const NamedCounters& baseline,
                                          const NamedCounters& counters) {
    NamedCounters since;
    for (const auto& [name, count] : counters) {
        const auto before = baseline.find(name);
        if (before == baseline.end()) {
            continue;
        }
        if (count < before->second) {
            return std::nullopt;
        }
        since.emplace(name, count - before->second);
    }
    return since;
}

void TellCounters(const NamedCounters& counters, EthernetPortStatistics& record) {
    const auto tell = [&record](ethernet_statistics::Position position,
                                std::optional<std::uint64_t> count) {
        record.texts.at(position) = count ? std::to_string(*count) : std::string();
    };
    for (const PortCounter& counter : PortCounters) {
        const auto count = CountOf(counters, counter.source.name);
        tell(counter.position, count ? count : CountOf(counters, counter.otherwise.name));
    }
    for (const UnicastCounter& counter : UnicastCounters) {
        tell(counter.position, Unicast(counters, counter));
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
