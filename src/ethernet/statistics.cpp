// The counters of an Ethernet port: showing and resetting them.
#include "ethernet/statistics.h"

#include <string_view>

#include "console/console.h"
#include "ethernet/closing_rule.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

using tavroapi::EthernetPortStatistics;
using tavroapi::OperationCode;

namespace {

// A row of the traffic section: the counters of both directions, by their numbers.
struct DirectionRow {
    MessageId label;
    std::size_t transmitted;
    std::size_t received;
};

constexpr DirectionRow TrafficRows[] = {
    {MessageId::EthernetCounters21And20, 21, 20},  // numbered the other way round
    {MessageId::EthernetCounters0And1, 0, 1},     {MessageId::EthernetCounters6And12, 6, 12},
    {MessageId::EthernetCounters8And14, 8, 14},   {MessageId::EthernetCounters10And16, 10, 16},
};

constexpr TextRow SecondSectionRows[] = {
    {MessageId::EthernetCounter2, 2},   {MessageId::EthernetCounter22, 22},
    {MessageId::EthernetCounter18, 18}, {MessageId::EthernetCounter29, 29},
    {MessageId::EthernetCounter26, 26}, {MessageId::EthernetCounter24, 24},
    {MessageId::EthernetCounter25, 25}, {MessageId::EthernetCounter27, 27},
    {MessageId::EthernetCounter32, 32},
};

constexpr TextRow ThirdSectionRows[] = {
    {MessageId::EthernetCounter3, 3},   {MessageId::EthernetCounter19, 19},
    {MessageId::EthernetCounter28, 28}, {MessageId::EthernetCounter17, 17},
    {MessageId::EthernetCounter23, 23}, {MessageId::EthernetCounter4, 4},
};

constexpr TextRow FourthSectionRows[] = {
    {MessageId::EthernetCounter33, 33},
    {MessageId::EthernetCounter34, 34},
    {MessageId::EthernetCounter35, 35},
    {MessageId::EthernetCounter36, 36},
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
    console::PrintNarrowLine("");
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

}  // namespace

void ShowEthernetPortStatistics(const std::string& mac) {
    tavroapi::StatisticsFlag flag = 1;
    EthernetPortStatistics statistics;
    switch (DoOperation<OperationCode::ReadEthernetStatistics>(mac, flag, statistics)) {
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

void ResetEthernetPortStatistics(const std::string& mac) {
    tavroapi::StatisticsFlag flag = 1;
    EthernetPortStatistics statistics;
    switch (DoOperation<OperationCode::ResetEthernetStatistics>(mac, flag, statistics)) {
        case CallOutcome::NotResolved:
            return;
        case CallOutcome::Failed:
            ShowFailure(MessageId::EthernetStatisticsResetFailed);
            return;
        case CallOutcome::Done:
            ShowMessage(MessageId::StatisticsReset);
            console::EndLine();
            ShowEthernetPortStatistics(mac);
            return;
    }
}

}  // namespace tavro
