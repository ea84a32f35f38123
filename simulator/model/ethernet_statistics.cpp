// The counters of Ethernet ports: reading and resetting them.
#include "simulator/host/ethernet_statistics.h"

#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;

// A counter and its position in the record. The record's other texts stay "0".
struct CounterRow {
    std::size_t position;
    std::uint64_t EthernetCounters::*counter;
};

constexpr CounterRow Counters[] = {
    {21, &EthernetCounters::bytesSent},
    {20, &EthernetCounters::bytesReceived},
    {0, &EthernetCounters::framesSent},
    {1, &EthernetCounters::framesReceived},
    {6, &EthernetCounters::unicastFramesSent},
    {12, &EthernetCounters::unicastFramesReceived},
    {8, &EthernetCounters::multicastFramesSent},
    {14, &EthernetCounters::multicastFramesReceived},
    {10, &EthernetCounters::broadcastFramesSent},
    {16, &EthernetCounters::broadcastFramesReceived},
    {2, &EthernetCounters::receiveErrors},
    {22, &EthernetCounters::checksumErrors},
    {18, &EthernetCounters::alignmentErrors},
    {29, &EthernetCounters::shortFrames},
    {26, &EthernetCounters::longFrames},
    {24, &EthernetCounters::fragments},
    {25, &EthernetCounters::jabberFrames},
    {27, &EthernetCounters::framesWithoutBuffer},
    {32, &EthernetCounters::receivedFramesDropped},
    {3, &EthernetCounters::transmitErrors},
    {19, &EthernetCounters::deferredFrames},
    {28, &EthernetCounters::lateCollisions},
    {17, &EthernetCounters::excessiveCollisions},
    {23, &EthernetCounters::singleCollisions},
    {4, &EthernetCounters::sentFramesDropped},
    {33, &EthernetCounters::pauseFramesSent},
    {34, &EthernetCounters::pauseFramesReceived},
    {35, &EthernetCounters::priorityPauseFramesSent},
    {36, &EthernetCounters::priorityPauseFramesReceived},
};

void Fill(const EthernetCounters& counters, tavroapi::EthernetPortStatistics& record) {
    record.texts.fill("0");
    for (const CounterRow& row : Counters) {
        record.texts.at(row.position) = std::to_string(counters.*row.counter);
    }
}

// Time passes between readings: what is told now is followed by the traffic that the next one
// shows.
Outcome ReadStatistics(Host& host, const std::string& request, tavroapi::StatisticsFlag /*flag*/,
                       tavroapi::EthernetPortStatistics& record) {
    const auto found = FindEthernetFunction(host, request);
    if (!found) {
        return UnknownIdentifier(request, L"Ethernet");
    }
    EthernetPart& part = *found.function->ethernet;
    EthernetStatistics statistics = part.statistics.value_or(EthernetStatistics{});
    Fill(statistics.counters, record);
    if (part.port.value_or(EthernetPort{}).linkStatus == LinkUp) {
        for (const CounterRow& row : Counters) {
            statistics.counters.*row.counter += statistics.traffic.*row.counter;
        }
        part.statistics = statistics;
    }
    return Done();
}

Outcome ResetStatistics(Host& host, const std::string& request, tavroapi::StatisticsFlag /*flag*/,
                        tavroapi::EthernetPortStatistics& record) {
    const auto found = FindEthernetFunction(host, request);
    if (!found) {
        return UnknownIdentifier(request, L"Ethernet");
    }
    EthernetPart& part = *found.function->ethernet;
    EthernetStatistics statistics = part.statistics.value_or(EthernetStatistics{});
    statistics.counters = {};
    Fill(statistics.counters, record);
    part.statistics = statistics;
    return Done();
}

constexpr OperationModel Rows[] = {
    Changes<OperationCode::ReadEthernetStatistics, ReadStatistics>(),
    Changes<OperationCode::ResetEthernetStatistics, ResetStatistics>()};

}  // namespace

std::span<const OperationModel> EthernetStatisticsOperations() {
    return Rows;
}

}  // namespace tavrosim
