// Data center bridging of an FCoE function: its settings, and what it and the forwarder agreed on.
#include <algorithm>
#include <array>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "simulator/model/from_records.h"
#include "tavroapi/dcb_records.h"

namespace tavrosim {
namespace {

using tavroapi::DcbConfig;
using tavroapi::DcbInfo;
using tavroapi::OperationCode;

constexpr const char* ExchangeVersion = "IEEE 802.1Qaz";
constexpr const char* Enabled = "Enable";
constexpr const char* Disabled = "Disable";

std::vector<std::string_view> Pieces(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(separators), text.size());
        if (length > 0) {
            pieces.push_back(text.substr(0, length));
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return pieces;
}

const char* EnabledOrDisabled(bool isOn) {
    return isOn ? Enabled : Disabled;
}

// "50,50" as items "group:bandwidth".
std::string BandwidthsByGroup(const DcbSettings& settings) {
    std::string items;
    std::size_t group = 0;
    for (const std::string_view bandwidth : Pieces(settings.bandwidths, ",")) {
        items += (group == 0 ? "" : ",") + std::to_string(group) + ":";
        items += bandwidth;
        ++group;
    }
    return items;
}

// Each of the eight priorities, and whether the sender pauses it instead of losing frames.
std::list<tavroapi::DcbPriority> FlowControlByPriority(const DcbSettings& settings) {
    constexpr std::string_view Priorities = "01234567";
    const auto chosen = Pieces(settings.flowControlPriorities, " ,");
    const std::set<std::string_view> paused(chosen.begin(), chosen.end());
    std::list<tavroapi::DcbPriority> entries;
    for (std::size_t i = 0; i < Priorities.size(); ++i) {
        const std::string_view priority = Priorities.substr(i, 1);
        auto& texts = entries.emplace_back().texts;
        texts[tavroapi::dcb_priority::Number] = priority;
        texts[tavroapi::dcb_priority::FlowControl] = EnabledOrDisabled(paused.contains(priority));
    }
    return entries;
}

std::array<std::string, 6> TextsOf(const DcbSettings& settings) {
    return {settings.state,
            settings.flowControlPriorities,
            settings.fcoePriority,
            EnabledOrDisabled(!settings.flowControlPriorities.empty()),
            EnabledOrDisabled(!settings.bandwidths.empty()),
            settings.willing};
}

Outcome ReadInfo(const Viewed<FcoePart>& at, DcbInfo& info) {
    const DcbSettings& local = at.part.dcb;
    const DcbSettings& peer = at.host.fcoeFabric.dcb;
    const bool exchanges = local.state == Enabled && peer.state == Enabled;
    info.summary = {ExchangeVersion, exchanges ? "Up" : "Down", local.state, local.willing};
    info.local = TextsOf(local);
    info.localGroupMap = local.groupMap;
    info.localBandwidths = BandwidthsByGroup(local);
    info.localPriorities = FlowControlByPriority(local);
    info.peer = TextsOf(peer);
    info.peerGroupMap = peer.groupMap;
    info.peerBandwidths = BandwidthsByGroup(peer);
    info.peerPriorities = FlowControlByPriority(peer);
    return Done();
}

Outcome ReadConfig(const Viewed<FcoePart>& at, DcbConfig& config) {
    const DcbSettings& dcb = at.part.dcb;
    config = {dcb.state,        dcb.willing,     dcb.flowControlPriorities,
              dcb.fcoePriority, dcb.priorityMap, dcb.groupMap,
              dcb.bandwidths};
    return Done();
}

Outcome WriteConfig(const Edited<FcoePart>& at, const DcbConfig& config) {
    at.part.dcb = DcbFrom(config);
    return Done();
}

}  // namespace

std::span<const OperationModel> DcbOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadDcbInfo, FcoePart, ReadInfo>(),
        Reads<OperationCode::ReadDcbConfig, FcoePart, ReadConfig>(),
        Changes<OperationCode::WriteDcbConfig, FcoePart, WriteConfig>(),
    };
    return Rows;
}

}  // namespace tavrosim
