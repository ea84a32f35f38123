// The counters of Ethernet ports: reading and resetting them.
#include "simulator/host/ethernet_statistics.h"

#include "simulator/host/lookup.h"
#include "simulator/host/told_hardware.h"
#include "simulator/model/families.h"
#include "simulator/model/from_records.h"
#include "simulator/model/model.h"
#include "simulator/model/numbers.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
namespace ethernet_statistics = tavroapi::ethernet_statistics;

// A counter and its position in the record. The record's other texts stay "0".
struct CounterRow {
    std::size_t position;
    std::uint64_t EthernetCounters::*counter;
};

constexpr CounterRow Counters[] = {
    {ethernet_statistics::BytesSent, &EthernetCounters::bytesSent},
    {ethernet_statistics::BytesReceived, &EthernetCounters::bytesReceived},
    {ethernet_statistics::FramesSent, &EthernetCounters::framesSent},
    {ethernet_statistics::FramesReceived, &EthernetCounters::framesReceived},
    {ethernet_statistics::UnicastFramesSent, &EthernetCounters::unicastFramesSent},
    {ethernet_statistics::UnicastFramesReceived, &EthernetCounters::unicastFramesReceived},
    {ethernet_statistics::MulticastFramesSent, &EthernetCounters::multicastFramesSent},
    {ethernet_statistics::MulticastFramesReceived, &EthernetCounters::multicastFramesReceived},
    {ethernet_statistics::BroadcastFramesSent, &EthernetCounters::broadcastFramesSent},
    {ethernet_statistics::BroadcastFramesReceived, &EthernetCounters::broadcastFramesReceived},
    {ethernet_statistics::ReceiveErrors, &EthernetCounters::receiveErrors},
    {ethernet_statistics::ChecksumErrors, &EthernetCounters::checksumErrors},
    {ethernet_statistics::AlignmentErrors, &EthernetCounters::alignmentErrors},
    {ethernet_statistics::ShortFrames, &EthernetCounters::shortFrames},
    {ethernet_statistics::LongFrames, &EthernetCounters::longFrames},
    {ethernet_statistics::Fragments, &EthernetCounters::fragments},
    {ethernet_statistics::JabberFrames, &EthernetCounters::jabberFrames},
    {ethernet_statistics::FramesWithoutBuffer, &EthernetCounters::framesWithoutBuffer},
    {ethernet_statistics::ReceivedFramesDropped, &EthernetCounters::receivedFramesDropped},
    {ethernet_statistics::TransmitErrors, &EthernetCounters::transmitErrors},
    {ethernet_statistics::DeferredFrames, &EthernetCounters::deferredFrames},
    {ethernet_statistics::LateCollisions, &EthernetCounters::lateCollisions},
    {ethernet_statistics::ExcessiveCollisions, &EthernetCounters::excessiveCollisions},
    {ethernet_statistics::SingleCollisions, &EthernetCounters::singleCollisions},
    {ethernet_statistics::SentFramesDropped, &EthernetCounters::sentFramesDropped},
    {ethernet_statistics::PauseFramesSent, &EthernetCounters::pauseFramesSent},
    {ethernet_statistics::PauseFramesReceived, &EthernetCounters::pauseFramesReceived},
    {ethernet_statistics::PriorityPauseFramesSent, &EthernetCounters::priorityPauseFramesSent},
    {ethernet_statistics::PriorityPauseFramesReceived,
     &EthernetCounters::priorityPauseFramesReceived},
};

void Fill(const EthernetCounters& counters, tavroapi::EthernetPortStatistics& record) {
    record.texts.fill("0");
    for (const CounterRow& row : Counters) {
        record.texts.at(row.position) = std::to_string(counters.*row.counter);
    }
}

Outcome TellStatistics(const Viewed<EthernetPart>& at, tavroapi::StatisticsFlag /*flag*/,
                       tavroapi::EthernetPortStatistics& record) {
    Fill(at.part.statistics.value_or(EthernetStatistics{}).counters, record);
    return Done();
}

// Time passes between readings: what is told now is followed by the traffic that the next one
// shows.
Outcome ReadStatistics(const Edited<EthernetPart>& at, tavroapi::StatisticsFlag /*flag*/,
                       tavroapi::EthernetPortStatistics& record) {
    EthernetPart& part = at.part;
    EthernetStatistics statistics = part.statistics.value_or(EthernetStatistics{});
    Fill(statistics.counters, record);
    if (HardwareOf(at.adapter, at.port, at.function).linkStatus == LinkUp) {
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

}  // namespace

std::span<const OperationModel> EthernetStatisticsOperations() {
    static constexpr OperationModel Rows[] = {
        Counts<OperationCode::ReadEthernetStatistics, EthernetPart, ReadStatistics,
               TellStatistics>(),
        Changes<OperationCode::ResetEthernetStatistics, EthernetPart, ResetStatistics>()};
    return Rows;
}

EthernetCounters EthernetCountersFrom(const tavroapi::EthernetPortStatistics& record) {
    EthernetCounters counters;
    for (const CounterRow& row : Counters) {
        counters.*row.counter = CounterFrom(record.texts.at(row.position));
    }
    return counters;
}

}  // namespace tavrosim
