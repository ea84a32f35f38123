#include "simulator/model/from_records.h"

#include <cstddef>

#include "simulator/model/numbers.h"

namespace tavrosim {
namespace {

// Counters that stand in the record in the order of their members.
template <class Statistics, class Record>
Statistics StatisticsFrom(const Record& record) {
    Statistics statistics;
    std::size_t position = 0;
    Statistics::Members([&](const auto&... member) {
        ((statistics.*member.member = CounterFrom(record.texts.at(position++))), ...);
    });
    return statistics;
}

// Items "group:bandwidth" without their groups.
std::string BandwidthsFrom(const std::string& items) {
    std::string bandwidths;
    bool isGroup = true;
    for (const char character : items) {
        if (character == ',') {
            isGroup = true;
            bandwidths += character;
        } else if (isGroup && character == ':') {
            isGroup = false;
        } else if (!isGroup) {
            bandwidths += character;
        }
    }
    return bandwidths;
}

DcbSettings SideFrom(const std::array<std::string, 6>& texts, const std::string& groupMap,
                     const std::string& bandwidths) {
    DcbSettings settings;
    settings.state = texts[0];
    settings.flowControlPriorities = texts[1];
    settings.fcoePriority = texts[2];
    settings.willing = texts[5];
    settings.groupMap = groupMap;
    settings.bandwidths = BandwidthsFrom(bandwidths);
    return settings;
}

}  // namespace

IscsiStatistics IscsiStatisticsFrom(const tavroapi::IscsiParameterRecord& record) {
    return StatisticsFrom<IscsiStatistics>(record);
}

FcoeStatistics FcoeStatisticsFrom(const tavroapi::FcoeStatisticsRecord& record) {
    return StatisticsFrom<FcoeStatistics>(record);
}

DcbSettings DcbFrom(const tavroapi::DcbConfig& config) {
    return {config.state,       config.willing,          config.priorities, config.fcoePriority,
            config.priorityMap, config.priorityGroupMap, config.bandwidth};
}

DcbSettings LocalDcbFrom(const tavroapi::DcbInfo& info) {
    return SideFrom(info.local, info.localGroupMap, info.localBandwidths);
}

DcbSettings PeerDcbFrom(const tavroapi::DcbInfo& info) {
    return SideFrom(info.peer, info.peerGroupMap, info.peerBandwidths);
}

}  // namespace tavrosim
