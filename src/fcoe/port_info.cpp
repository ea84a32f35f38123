// An FCoE function of a port: its port information, its statistics, and setting these back.
#include "fcoe/port_info.h"

#include <cstdint>

#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

// One text stands under two labels.
constexpr TextRow PortRows[] = {
    {MessageId::DriverName, 7},
    {MessageId::DriverVersion, 6},
    {MessageId::FcoePortWwn, 2},
    {MessageId::FcoeNodeWwn, 1},
    {MessageId::FcoeFabricName, 3},
    {MessageId::FcoeLinkState, 11},
    {MessageId::FirmwareVersion, 10},
    {MessageId::FcoeOptionRomVersion, 9},
    {MessageId::FcoeHardwareVersion, 8},
    {MessageId::MaximumFrameSize, 18},
    {MessageId::FcoeDiscoveredPorts, 17},
    {MessageId::FcoePortType, 12},
    {MessageId::FcoeSupportedSpeeds, 19},
    {MessageId::FcoePortFcid, 13},
    {MessageId::FcoeLinkSpeed, 14},
    {MessageId::SerialNumber, 5},
    {MessageId::ModelName, 4},
    {MessageId::FcoeSupportedClasses, 15},
    {MessageId::FcoeDeviceName, 20},
    {MessageId::FcoeSymbolicName, 20},
    {MessageId::FcoeFpmaMac, 22},
    {MessageId::FcoeFcfMac, 23},
    {MessageId::FcoeFcfNodeWwn, 24},
    {MessageId::FcoeFcfPortWwn, 25},
    {MessageId::FcoeFcMap, 26},
    {MessageId::FcoeFabricVlan, 27},
};

constexpr std::size_t TitleText = 0;
constexpr std::size_t SupportedTypesText = 16;

// The last counter is shown sixth.
constexpr TextRow StatisticsRows[] = {
    {MessageId::SecondsSinceReset, 0},   {MessageId::TransmittedFrames, 1},
    {MessageId::TransmittedWords, 2},    {MessageId::ReceivedFrames, 3},
    {MessageId::ReceivedWords, 4},       {MessageId::VirtualLinkFailures, 29},
    {MessageId::LoopInitializations, 5}, {MessageId::NotOperationalSequences, 6},
    {MessageId::ErrorFrames, 7},         {MessageId::DumpedFrames, 8},
    {MessageId::LinkFailures, 9},        {MessageId::SynchronizationLosses, 10},
    {MessageId::SignalLosses, 11},       {MessageId::ProtocolErrors, 12},
    {MessageId::InvalidWords, 13},       {MessageId::InvalidCrcs, 14},
    {MessageId::InputRequests, 15},      {MessageId::OutputRequests, 16},
    {MessageId::ControlRequests, 17},    {MessageId::InputMegabytes, 18},
    {MessageId::OutputMegabytes, 19},    {MessageId::FipSolicitations, 20},
    {MessageId::FipAdvertisements, 21},  {MessageId::MissedFipAdvertisements, 22},
    {MessageId::FabricLogins, 23},       {MessageId::RejectedFabricLogins, 24},
    {MessageId::PortLogins, 25},         {MessageId::AbortedExchanges, 26},
    {MessageId::TimedOutRequests, 27},   {MessageId::QueueFullConditions, 28},
};

// The second half of a text too long for a row stands on a line of its own.
std::string OverTwoLines(const std::string& text) {
    const std::size_t half = text.size() / 2;
    return text.substr(0, half) + "\n\t\t\t\t\t" + text.substr(half);
}

}  // namespace

void ShowFcoePortInfo(const std::string& wwn) {
    tavroapi::FcoePortRecord port;
    if (DoOperation<OperationCode::ReadFcoePort>(wwn, port, StatusUse::Ignore) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::FcoePortInfoFailed);
        return;
    }
    console::EndLine();
    ShowMessage(MessageId::FcoePortTitle, port.texts[TitleText], Layout::Title);
    ShowRows(port, PortRows);
    ShowMessage(MessageId::FcoeSupportedTypes, OverTwoLines(port.texts[SupportedTypesText]),
                Layout::Row);
    console::PrintLine(TabRule65);
}

void ShowFcoeStatistics(const std::string& wwn) {
    std::uint32_t unused = 0;
    tavroapi::FcoeStatisticsRecord statistics;
    if (DoOperation<OperationCode::ReadFcoeStatistics>(wwn, unused, statistics) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::FcoeStatisticsFailed);
        return;
    }
    ShowMessage(MessageId::FcoeStatisticsTitle, wwn, Layout::Title);
    ShowRows(statistics, StatisticsRows);
    ShowClosingRules();
}

void ResetFcoeStatistics(const std::string& wwn) {
    std::uint32_t unused = 0;
    tavroapi::FcoeStatisticsRecord statistics;
    if (DoOperation<OperationCode::ResetFcoeStatistics>(wwn, unused, statistics) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::StatisticsResetFailed);
        return;
    }
    ShowMessage(MessageId::StatisticsReset);
    console::EndLine();
}

}  // namespace tavro
