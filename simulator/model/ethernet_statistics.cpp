// The counters of Ethernet ports: reading and resetting them.
#include "simulator/host/ethernet_statistics.h"

#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
namespace position = tavroapi::ethernet_statistics;

// A counter and its position in the record. The record's other texts stay "0".
struct CounterRow {
    std::size_t position;
    std::uint64_t EthernetCounters::*counter;
};

constexpr CounterRow Counters[] = {
    {position::BytesSent, &EthernetCounters::bytesSent},
    {position::BytesReceived, &EthernetCounters::bytesReceived},
    {position::FramesSent, &EthernetCounters::framesSent},
    {position::FramesReceived, &EthernetCounters::framesReceived},
    {position::UnicastFramesSent, &EthernetCounters::unicastFramesSent},
    {position::UnicastFramesReceived, &EthernetCounters::unicastFramesReceived},
    {position::MulticastFramesSent, &EthernetCounters::multicastFramesSent},
    {position::MulticastFramesReceived, &EthernetCounters::multicastFramesReceived},
    {position::BroadcastFramesSent, &EthernetCounters::broadcastFramesSent},
    {position::BroadcastFramesReceived, &EthernetCounters::broadcastFramesReceived},
    {position::ReceiveErrors, &EthernetCounters::receiveErrors},
    {position::ChecksumErrors, &EthernetCounters::checksumErrors},
    {position::AlignmentErrors, &EthernetCounters::alignmentErrors},
    {position::ShortFrames, &EthernetCounters::shortFrames},
    {position::LongFrames, &EthernetCounters::longFrames},
    {position::Fragments, &EthernetCounters::fragments},
    {position::JabberFrames, &EthernetCounters::jabberFrames},
    {position::FramesWithoutBuffer, &EthernetCounters::framesWithoutBuffer},
    {position::ReceivedFramesDropped, &EthernetCounters::receivedFramesDropped},
    {position::TransmitErrors, &EthernetCounters::transmitErrors},
    {position::DeferredFrames, &EthernetCounters::deferredFrames},
    {position::LateCollisions, &EthernetCounters::lateCollisions},
    {position::ExcessiveCollisions, &EthernetCounters::excessiveCollisions},
    {position::SingleCollisions, &EthernetCounters::singleCollisions},
    {position::SentFramesDropped, &EthernetCounters::sentFramesDropped},
    {position::PauseFramesSent, &EthernetCounters::pauseFramesSent},
    {position::PauseFramesReceived, &EthernetCounters::pauseFramesReceived},
    {position::PriorityPauseFramesSent, &EthernetCounters::priorityPauseFramesSent},
    {position::PriorityPauseFramesReceived, &EthernetCounters::priorityPauseFramesReceived},
};

void Fill(const EthernetCounters& counters, tavroapi::EthernetPortStatistics& record) {
    record.texts.fill("0");
    for (const CounterRow& row : Counters) {
        record.texts.at(row.position) = std::to_string(counters.*row.counter);
    }
}

// Time passes between readings: what is told now is followed by the traffic that the next one
// shows.
Outcome ReadStatistics(const Edited<EthernetPart>& at, tavroapi::StatisticsFlag /*flag*/,
                       tavroapi::EthernetPortStatistics& record) {
    EthernetPart& part = at.part;
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

Outcome ResetStatistics(const Edited<EthernetPart>& at, tavroapi::StatisticsFlag /*flag*/,
                        tavroapi::EthernetPortStatistics& record) {
    EthernetPart& part = at.part;
    EthernetStatistics statistics = part.statistics.value_or(EthernetStatistics{});
    statistics.counters = {};
    Fill(statistics.counters, record);
    part.statistics = statistics;
    return Done();
}

constexpr OperationModel Rows[] = {
    Changes<OperationCode::ReadEthernetStatistics, EthernetPart, ReadStatistics>(),
    Changes<OperationCode::ResetEthernetStatistics, EthernetPart, ResetStatistics>()};

}  // namespace

std::span<const OperationModel> EthernetStatisticsOperations() {
    return Rows;
}

}  // namespace tavrosim
