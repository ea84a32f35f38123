// Data center bridging of an FCoE port: what it negotiated, and how it is configured.
#include "fcoe/dcb.h"

#include "cli/invocation.h"
#include "console/console.h"
#include "fcoe/commands.h"
#include "fcoe/dcb_text.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"

namespace tavro {

using tavroapi::DcbConfig;
using tavroapi::OperationCode;

namespace {

constexpr Row<DcbConfig> ConfigRows[] = {
    {MessageId::DcbState, &DcbConfig::state},
    {MessageId::DcbWilling, &DcbConfig::willing},
    {MessageId::FlowControlPriorities, &DcbConfig::priorities},
    {MessageId::FcoePriority, &DcbConfig::fcoePriority},
};

constexpr TextRow PriorityRows[] = {
    {MessageId::PriorityNumber, tavroapi::dcb_priority::Number},
    {MessageId::PrioritySetting, tavroapi::dcb_priority::FlowControl},
};

// The labels of a block of texts, in the texts' order.
template <std::size_t Count>
using Labels = MessageId[Count];

constexpr Labels<4> SummaryLabels = {MessageId::DcbVersion, MessageId::DcbExchangeState,
                                     MessageId::DcbState, MessageId::DcbWilling};

constexpr Labels<6> LocalLabels = {
    MessageId::DcbState,         MessageId::FlowControlPriorities, MessageId::FcoePriority,
    MessageId::FlowControlState, MessageId::BandwidthGroupState,   MessageId::DcbWilling};

constexpr Labels<6> PeerLabels = {
    MessageId::PeerDcbState,         MessageId::FlowControlPriorities,   MessageId::FcoePriority,
    MessageId::PeerFlowControlState, MessageId::PeerBandwidthGroupState, MessageId::PeerWilling};

template <std::size_t Count>
void ShowBlock(const std::array<std::string, Count>& texts, const Labels<Count>& labels) {
    for (std::size_t i = 0; i < Count; ++i) {
        ShowMessage(labels[i], texts[i], Layout::Row);
    }
}

constexpr std::string_view AllPriorities = "0,1,2,3,4,5,6,7";
constexpr std::string_view TableIndent = "  ";

void ShowGroupsAndPriorities(const std::string& groupMap, const std::string& bandwidths,
                             const std::list<tavroapi::DcbPriority>& priorities) {
    ShowNotice(MessageId::PriorityGroups);
    console::ShowEach(ItemsOf(groupMap), [](std::string_view item) {
        const MapItem group = CutItem(item);
        console::PrintLine(L"\tPriorities in Priority Group " + ToWide(group.key) + L"\t  : " +
                           ToWide(group.values));
    });
    console::EndLine();
    ShowNotice(MessageId::GroupBandwidths);
    console::EndLine();
    ShowMessage(MessageId::Priorities, AllPriorities, Layout::Row, TableIndent);
    ShowMessage(MessageId::BandwidthPercentages, JoinedBandwidths(bandwidths), Layout::Row,
                TableIndent);
    ShowNotice(MessageId::SettingsByPriority);
    console::ShowEach(priorities, [](const tavroapi::DcbPriority& priority) {
        ShowRows(priority, PriorityRows);
    });
    console::PrintLine(Rule78);
}

void PrintPriorityMap(const std::string& map) {
    const std::wstring indent(42, L' ');
    console::ShowEach(ItemsOf(map),
                      [&](std::string_view item) { console::PrintLine(indent + ToWide(item)); });
}

// An item without ':' is pointed out, and then printed under the key of the item before it.
void PrintPriorityGroupMap(const std::string& map) {
    std::wstring key;
    console::ShowEach(ItemsOf(map), [&](std::string_view item) {
        const std::size_t colon = item.find(':');
        std::string_view values = item;
        if (colon == std::string_view::npos) {
            console::PrintLine(L" No Matching : symbol! - " + ToWide(item));
        } else {
            key = ToWide(item.substr(0, colon));
            values.remove_prefix(colon);
        }
        console::PrintLine(L"         " + key + L" Priority          " + ToWide(values));
    });
}

void ShowConfig(const std::string& wwn, const DcbConfig& config) {
    ShowMessage(MessageId::DcbConfigTitle, wwn, Layout::Title);
    ShowRows(config, ConfigRows);
    ShowMessage(MessageId::PriorityGroups, NoValue, Layout::Row);
    PrintPriorityMap(config.priorityMap);
    console::EndLine();
    console::PrintLine(L"       Priority Group Bandwidth              ");
    console::PrintLine(L"       Bandwidth %                         :" + ToWide(config.bandwidth));
    PrintPriorityGroupMap(config.priorityGroupMap);
    console::PrintLine(Rule78);
}

// A missing entry point has no message of its own.
void ReportReadFailure(CallOutcome outcome) {
    if (outcome == CallOutcome::Failed) {
        ShowNotice(MessageId::DcbReadFailed);
    }
    ShowLastError();
}

// Shows what an FCoE port and its peer agreed on in data center bridging.
void ShowDcbInfo(const Invocation& invocation) {
    tavroapi::DcbInfo info;
    const CallOutcome outcome = DoOperation<OperationCode::ReadDcbInfo>(invocation.port, info);
    if (outcome != CallOutcome::Done) {
        ReportReadFailure(outcome);
        return;
    }
    ShowMessage(MessageId::DcbInfoTitle, invocation.port, Layout::Title);
    ShowBlock(info.summary, SummaryLabels);
    console::PrintLine(Rule78);
    ShowMessage(MessageId::DcbLocalTitle, NoValue, Layout::Title);
    ShowBlock(info.local, LocalLabels);
    ShowGroupsAndPriorities(info.localGroupMap, info.localBandwidths, info.localPriorities);
    ShowMessage(MessageId::DcbPeerTitle, NoValue, Layout::Title);
    ShowBlock(info.peer, PeerLabels);
    ShowGroupsAndPriorities(info.peerGroupMap, info.peerBandwidths, info.peerPriorities);
}

// Shows how data center bridging is configured on an FCoE port.
void ShowDcbConfig(const Invocation& invocation) {
    DcbConfig config;
    ReadAndShowDcbConfig(invocation.port, config);
}

}  // namespace

bool ReadAndShowDcbConfig(const std::string& wwn, DcbConfig& config) {
    const CallOutcome outcome = DoOperation<OperationCode::ReadDcbConfig>(wwn, config);
    if (outcome != CallOutcome::Done) {
        ReportReadFailure(outcome);
        return false;
    }
    ShowConfig(wwn, config);
    return true;
}

std::span<const Command> DcbCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{38},
         .form = {"-fcoe", operand::PortWwn, "-getdcbinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadDcbInfo,
         .handler = ShowDcbInfo},
        {.code = CommandCode{39},
         .form = {"-fcoe", operand::PortWwn, "-getdcbconfig"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadDcbConfig,
         .handler = ShowDcbConfig},
    };
    return Rows;
}

}  // namespace tavro
