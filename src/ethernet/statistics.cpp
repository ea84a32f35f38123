// The counters of an Ethernet port: showing and resetting them.
#include "ethernet/commands.h"

#include <string_view>

#include "cli/invocation.h"
#include "console/console.h"
#include "ethernet/closing_rule.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

using tavroapi::EthernetPortStatistics;
using tavroapi::OperationCode;

namespace {

namespace ethernet_statistics = tavroapi::ethernet_statistics;

// A row of the traffic section: the counters of both directions, by their numbers.
struct DirectionRow {
    MessageId label;
    std::size_t transmitted;
    std::size_t received;
};

constexpr DirectionRow TrafficRows[] = {
    {MessageId::EthernetBytes, ethernet_statistics::BytesSent,
     ethernet_statistics::BytesReceived},  // numbered the other way round
    {MessageId::EthernetFrames, ethernet_statistics::FramesSent,
     ethernet_statistics::FramesReceived},
    {MessageId::EthernetUnicastFrames, ethernet_statistics::UnicastFramesSent,
     ethernet_statistics::UnicastFramesReceived},
    {MessageId::EthernetMulticastFrames, ethernet_statistics::MulticastFramesSent,
     ethernet_statistics::MulticastFramesReceived},
    {MessageId::EthernetBroadcastFrames, ethernet_statistics::BroadcastFramesSent,
     ethernet_statistics::BroadcastFramesReceived},
};

constexpr TextRow SecondSectionRows[] = {
    {MessageId::EthernetReceiveErrors, ethernet_statistics::ReceiveErrors},
    {MessageId::EthernetChecksumErrors, ethernet_statistics::ChecksumErrors},
    {MessageId::EthernetAlignmentErrors, ethernet_statistics::AlignmentErrors},
    {MessageId::EthernetShortFrames, ethernet_statistics::ShortFrames},
    {MessageId::EthernetLongFrames, ethernet_statistics::LongFrames},
    {MessageId::EthernetFragments, ethernet_statistics::Fragments},
    {MessageId::EthernetJabberFrames, ethernet_statistics::JabberFrames},
    {MessageId::EthernetFramesWithoutBuffer, ethernet_statistics::FramesWithoutBuffer},
    {MessageId::EthernetReceivedFramesDropped, ethernet_statistics::ReceivedFramesDropped},
};

constexpr TextRow ThirdSectionRows[] = {
    {MessageId::EthernetTransmitErrors, ethernet_statistics::TransmitErrors},
    {MessageId::EthernetDeferredFrames, ethernet_statistics::DeferredFrames},
    {MessageId::EthernetLateCollisions, ethernet_statistics::LateCollisions},
    {MessageId::EthernetExcessiveCollisions, ethernet_statistics::ExcessiveCollisions},
    {MessageId::EthernetSingleCollisions, ethernet_statistics::SingleCollisions},
    {MessageId::EthernetSentFramesDropped, ethernet_statistics::SentFramesDropped},
};

constexpr TextRow FourthSectionRows[] = {
    {MessageId::EthernetPauseFramesSent, ethernet_statistics::PauseFramesSent},
    {MessageId::EthernetPauseFramesReceived, ethernet_statistics::PauseFramesReceived},
    {MessageId::EthernetPriorityPauseFramesSent, ethernet_statistics::PriorityPauseFramesSent},
    {MessageId::EthernetPriorityPauseFramesReceived,
     ethernet_statistics::PriorityPauseFramesReceived},
};

constexpr std::wstring_view Rule67 = TabRule67.substr(1);

std::string RightAligned(std::string_view text) {
    constexpr std::size_t Width = 10;
    std::string field(text.size() < Width ? Width - text.size() : 0, ' ');
    field += text;
    return field;
}

void ShowBothDirections(MessageId label, std::string_view transmitted, std::string_view received) {
    ShowMessage(label, RightAligned(transmitted) + "\t" + RightAligned(received), Layout::Row);
}

void CloseSection() {
    console::EndLine();
    PrintClosingRule(Rule67);
}

template <std::size_t Count>
void ShowSection(MessageId title, const EthernetPortStatistics& statistics,
                 const TextRow (&rows)[Count]) {
    ShowMessage(title, NoValue, Layout::Section);
    ShowRows(statistics, rows);
}

void ShowTraffic(const EthernetPortStatistics& statistics) {
    ShowMessage(MessageId::EthernetStatisticsSection1, NoValue, Layout::Section);
    console::EndLine();
    ShowBothDirections(MessageId::EthernetCounterDirections, "Transmit", "Receive");
    for (const DirectionRow& row : TrafficRows) {
        ShowBothDirections(row.label, statistics.texts.at(row.transmitted),
                           statistics.texts.at(row.received));
    }
}

void ShowStatistics(const EthernetPortStatistics& statistics) {
    console::EndLine();
    ShowMessage(MessageId::EthernetStatisticsTitle, NoValue, Layout::Title);
    ShowTraffic(statistics);
    CloseSection();
    ShowSection(MessageId::EthernetStatisticsSection2, statistics, SecondSectionRows);
    CloseSection();
    ShowSection(MessageId::EthernetStatisticsSection3, statistics, ThirdSectionRows);
    CloseSection();
    ShowSection(MessageId::EthernetStatisticsSection4, statistics, FourthSectionRows);
    PrintClosingRule(Rule67);  // the last section has no empty line before its rule
}

// Shows the counters of an Ethernet port in four sections. Without the library's entry point
// nothing is shown.
void ShowEthernetPortStatistics(const Invocation& invocation) {
    tavroapi::StatisticsFlag flag = 1;
    EthernetPortStatistics statistics;
    switch (DoOperation<OperationCode::ReadEthernetStatistics>(invocation.port, flag, statistics)) {
        case CallOutcome::NotResolved:
            return;
        case CallOutcome::Failed:
            ShowFailure(MessageId::EthernetStatisticsFailed);
            return;
        case CallOutcome::Done:
            ShowStatistics(statistics);
            return;
    }
}

// Resets the counters of an Ethernet port, then reads and shows them.
void ResetEthernetPortStatistics(const Invocation& invocation) {
    tavroapi::StatisticsFlag flag = 1;
    EthernetPortStatistics statistics;
    switch (
        DoOperation<OperationCode::ResetEthernetStatistics>(invocation.port, flag, statistics)) {
        case CallOutcome::NotResolved:
            return;
        case CallOutcome::Failed:
            ShowFailure(MessageId::EthernetStatisticsResetFailed);
            return;
        case CallOutcome::Done:
            ShowMessage(MessageId::StatisticsReset);
            console::EndLine();
            ShowEthernetPortStatistics(invocation);
            return;
    }
}

}  // namespace

std::span<const Command> EthernetStatisticsCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{57},
         .form = {"-ethernet", operand::PortMac, "-portstat"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadEthernetStatistics,
         .handler = ShowEthernetPortStatistics},
        {.code = CommandCode{58},
         .form = {"-ethernet", operand::PortMac, "-resetstat"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::ResetEthernetStatistics,
         .handler = ResetEthernetPortStatistics},
    };
    return Rows;
}

}  // namespace tavro
