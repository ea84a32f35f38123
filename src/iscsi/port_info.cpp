#include "iscsi/port_info.h"

#include "console/console.h"
#include "iscsi/phrases.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

constexpr std::string_view DriverWithoutStatistics = "bnx2i";

constexpr std::size_t PortTitlePosition = 3;
constexpr TextRow PortRows[] = {
    {MessageId::DriverName, tavroapi::IscsiPortDriverPosition},
    {MessageId::DriverVersion, 2},
    {MessageId::FirmwareVersion, 21},
    {MessageId::IscsiPortMac, PortTitlePosition},
    {MessageId::SerialNumber, 5},
    {MessageId::ModelName, 4},
    {MessageId::IscsiPortLinkStatus, 6},
    {MessageId::IscsiPortLinkSpeed, 7},
    {MessageId::IscsiPortDhcp, 8},
    {MessageId::IscsiPortAddress, 9},
    {MessageId::IscsiPortSubnetMask, 10},
    {MessageId::IscsiPortGateway, 11},
    {MessageId::IscsiPortVlan, 12},
    {MessageId::IscsiPortVlanId, 13},
    {MessageId::IscsiPortVlanPriority, 14},
    {MessageId::IscsiPortIPv6Dhcp, 16},
    {MessageId::MaximumFrameSize, 15},
    {MessageId::IscsiPortIPv6Address, 17},
    {MessageId::IscsiPortIPv6PrefixLength, 18},
    {MessageId::IscsiPortIPv6Gateway, 19},
    {MessageId::IscsiPortActiveSessions, 20},
};

constexpr TextRow DefaultRows[] = {
    {MessageId::DefaultMaxConnections, 0},      {MessageId::DefaultInitialR2T, 1},
    {MessageId::DefaultImmediateData, 2},       {MessageId::DefaultMaxBurstLength, 3},
    {MessageId::DefaultFirstBurstLength, 4},    {MessageId::DefaultTimeToWait, 5},
    {MessageId::DefaultTimeToRetain, 6},        {MessageId::DefaultMaxOutstandingR2T, 7},
    {MessageId::DefaultDataPduInOrder, 8},      {MessageId::DefaultDataSequenceInOrder, 9},
    {MessageId::DefaultErrorRecoveryLevel, 10}, {MessageId::DefaultMaxReceiveLength, 11},
    {MessageId::DefaultHeaderDigest, 12},       {MessageId::DefaultDataDigest, 13},
};

constexpr TextRow StatisticsRows[] = {
    {MessageId::StatisticsBytesSent, 0},       {MessageId::StatisticsBytesReceived, 1},
    {MessageId::StatisticsPdusSent, 2},        {MessageId::StatisticsPdusReceived, 3},
    {MessageId::StatisticsScsiCommands, 4},    {MessageId::StatisticsScsiResponses, 5},
    {MessageId::StatisticsReadyToTransfer, 6}, {MessageId::StatisticsTaskCommands, 7},
    {MessageId::StatisticsLogins, 8},          {MessageId::StatisticsLogouts, 9},
    {MessageId::StatisticsNopsSent, 10},       {MessageId::StatisticsNopsReceived, 11},
    {MessageId::StatisticsDigestErrors, 12},   {MessageId::StatisticsConnectionErrors, 13},
};

// Whether the port's driver is known to be one that keeps statistics.
bool KeepsStatistics(const std::string& mac) {
    tavroapi::IscsiPortRecord port;
    const CallOutcome outcome =
        DoOperation<OperationCode::ReadIscsiPort>(mac, port, StatusUse::Ignore);
    return outcome == CallOutcome::Done &&
           port.texts[tavroapi::IscsiPortDriverPosition] != DriverWithoutStatistics;
}

void ShowStatisticsUnsupported() {
    console::EndLine();
    console::PrintLine(L" This adapter does not support for iSCSI port statistics yet! ");
    console::EndLine();
}

}  // namespace

void ShowIscsiPort(const std::string& mac) {
    tavroapi::IscsiPortRecord port;
    if (DoOperation<OperationCode::ReadIscsiPort>(mac, port) != CallOutcome::Done) {
        ShowFailure(MessageId::IscsiPortInfoFailed);
        return;
    }
    ShowMessage(MessageId::IscsiPortTitle, port.texts[PortTitlePosition], Layout::Title);
    ShowRows(port, PortRows);
    ShowClosingRules();
}

void ShowIscsiStatistics(const std::string& mac) {
    if (!CanDoOperation()) {
        ShowFailure(MessageId::StatisticsFailed);
        return;
    }
    if (!KeepsStatistics(mac)) {
        ShowStatisticsUnsupported();
        ShowFailure(MessageId::StatisticsFailed);
        return;
    }
    tavroapi::IscsiParameterRecord statistics;
    if (DoOperation<OperationCode::ReadIscsiStatistics>(mac, statistics) != CallOutcome::Done) {
        ShowFailure(MessageId::StatisticsFailed);
        return;
    }
    ShowMessage(MessageId::StatisticsTitle, mac, Layout::Title);
    ShowRows(statistics, StatisticsRows);
    console::PrintLine(TabRule65);
    ShowMessage(MessageId::StatisticsNote);
    console::PrintLine(Rule78);
}

void ShowIscsiDefaults(const std::string& mac) {
    tavroapi::IscsiParameterRecord defaults;
    if (DoOperation<OperationCode::ReadIscsiDefaults>(mac, defaults) != CallOutcome::Done) {
        ShowFailure(MessageId::IscsiDefaultsFailed);
        return;
    }
    ShowMessage(MessageId::IscsiDefaultsTitle, mac, Layout::Title);
    ShowRows(defaults, DefaultRows);
    ShowClosingRules();
}

}  // namespace tavro
