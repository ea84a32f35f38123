// An FCoE function of a port: its port information, its statistics, and setting these back.
#include "fcoe/commands.h"

#include <cstdint>

#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

namespace fcoe_port = tavroapi::fcoe_port;
namespace fcoe_statistics = tavroapi::fcoe_statistics;

// One text stands under two labels.
constexpr TextRow PortRows[] = {
    {MessageId::DriverName, fcoe_port::Driver},
    {MessageId::DriverVersion, fcoe_port::DriverVersion},
    {MessageId::FcoePortWwn, fcoe_port::PortWwn},
    {MessageId::FcoeNodeWwn, fcoe_port::NodeWwn},
    {MessageId::FcoeFabricName, fcoe_port::FabricName},
    {MessageId::FcoeLinkState, fcoe_port::LinkState},
    {MessageId::FirmwareVersion, fcoe_port::FirmwareVersion},
    {MessageId::FcoeOptionRomVersion, fcoe_port::OptionRomVersion},
    {MessageId::FcoeHardwareVersion, fcoe_port::HardwareVersion},
    {MessageId::MaximumFrameSize, fcoe_port::MaximumFrameSize},
    {MessageId::FcoeDiscoveredPorts, fcoe_port::DiscoveredPorts},
    {MessageId::FcoePortType, fcoe_port::PortType},
    {MessageId::FcoeSupportedSpeeds, fcoe_port::SupportedSpeeds},
    {MessageId::FcoePortFcid, fcoe_port::Fcid},
    {MessageId::FcoeLinkSpeed, fcoe_port::LinkSpeed},
    {MessageId::SerialNumber, fcoe_port::SerialNumber},
    {MessageId::ModelName, fcoe_port::ModelName},
    {MessageId::FcoeSupportedClasses, fcoe_port::SupportedClasses},
    {MessageId::FcoeDeviceName, fcoe_port::DeviceName},
    {MessageId::FcoeSymbolicName, fcoe_port::DeviceName},
    {MessageId::FcoeFpmaMac, fcoe_port::FpmaMac},
    {MessageId::FcoeFcfMac, fcoe_port::FcfMac},
    {MessageId::FcoeFcfNodeWwn, fcoe_port::FcfNodeWwn},
    {MessageId::FcoeFcfPortWwn, fcoe_port::FcfPortWwn},
    {MessageId::FcoeFcMap, fcoe_port::FcMap},
    {MessageId::FcoeFabricVlan, fcoe_port::FabricVlan},
};

// The last counter is shown sixth.
constexpr TextRow StatisticsRows[] = {
    {MessageId::SecondsSinceReset, fcoe_statistics::SecondsSinceReset},
    {MessageId::TransmittedFrames, fcoe_statistics::TransmittedFrames},
    {MessageId::TransmittedWords, fcoe_statistics::TransmittedWords},
    {MessageId::ReceivedFrames, fcoe_statistics::ReceivedFrames},
    {MessageId::ReceivedWords, fcoe_statistics::ReceivedWords},
    {MessageId::VirtualLinkFailures, fcoe_statistics::VirtualLinkFailures},
    {MessageId::LoopInitializations, fcoe_statistics::LoopInitializations},
    {MessageId::NotOperationalSequences, fcoe_statistics::NotOperationalSequences},
    {MessageId::ErrorFrames, fcoe_statistics::ErrorFrames},
    {MessageId::DumpedFrames, fcoe_statistics::DumpedFrames},
    {MessageId::LinkFailures, fcoe_statistics::LinkFailures},
    {MessageId::SynchronizationLosses, fcoe_statistics::SynchronizationLosses},
    {MessageId::SignalLosses, fcoe_statistics::SignalLosses},
    {MessageId::ProtocolErrors, fcoe_statistics::ProtocolErrors},
    {MessageId::InvalidWords, fcoe_statistics::InvalidWords},
    {MessageId::InvalidCrcs, fcoe_statistics::InvalidCrcs},
    {MessageId::InputRequests, fcoe_statistics::InputRequests},
    {MessageId::OutputRequests, fcoe_statistics::OutputRequests},
    {MessageId::ControlRequests, fcoe_statistics::ControlRequests},
    {MessageId::InputMegabytes, fcoe_statistics::InputMegabytes},
    {MessageId::OutputMegabytes, fcoe_statistics::OutputMegabytes},
    {MessageId::FipSolicitations, fcoe_statistics::FipSolicitations},
    {MessageId::FipAdvertisements, fcoe_statistics::FipAdvertisements},
    {MessageId::MissedFipAdvertisements, fcoe_statistics::MissedFipAdvertisements},
    {MessageId::FabricLogins, fcoe_statistics::FabricLogins},
    {MessageId::RejectedFabricLogins, fcoe_statistics::RejectedFabricLogins},
    {MessageId::PortLogins, fcoe_statistics::PortLogins},
    {MessageId::AbortedExchanges, fcoe_statistics::AbortedExchanges},
    {MessageId::TimedOutRequests, fcoe_statistics::TimedOutRequests},
    {MessageId::QueueFullConditions, fcoe_statistics::QueueFullConditions},
};

// The second half of a text too long for a row stands on a line of its own.
std::string OverTwoLines(const std::string& text) {
    const std::size_t half = text.size() / 2;
    return text.substr(0, half) + "\n\t\t\t\t\t" + text.substr(half);
}

// Shows what the library tells of an FCoE function. `LastStatus` stays as it is.
void ShowFcoePortInfo(const Invocation& invocation) {
    tavroapi::FcoePortRecord port;
    if (DoOperation<OperationCode::ReadFcoePort>(invocation.port, port, StatusUse::Ignore) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::FcoePortInfoFailed);
        return;
    }
    console::EndLine();
    ShowMessage(MessageId::FcoePortTitle, port.texts[fcoe_port::Title], Layout::Title);
    ShowRows(port, PortRows);
    ShowMessage(MessageId::FcoeSupportedTypes, OverTwoLines(port.texts[fcoe_port::SupportedTypes]),
                Layout::Row);
    console::PrintLine(TabRule65);
}

// Shows the counters of an FCoE function.
void ShowFcoeStatistics(const Invocation& invocation) {
    std::uint32_t unused = 0;
    tavroapi::FcoeStatisticsRecord statistics;
    if (DoOperation<OperationCode::ReadFcoeStatistics>(invocation.port, unused, statistics) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::FcoeStatisticsFailed);
        return;
    }
    ShowMessage(MessageId::FcoeStatisticsTitle, invocation.port, Layout::Title);
    ShowRows(statistics, StatisticsRows);
    ShowClosingRules();
}

// Sets the counters of an FCoE function back.
void ResetFcoeStatistics(const Invocation& invocation) {
    std::uint32_t unused = 0;
    tavroapi::FcoeStatisticsRecord statistics;
    if (DoOperation<OperationCode::ResetFcoeStatistics>(invocation.port, unused, statistics) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::StatisticsResetFailed);
        return;
    }
    ShowMessage(MessageId::StatisticsReset);
    console::EndLine();
}

}  // namespace

std::span<const Command> FcoePortCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{30},
         .form = {"-fcoe", operand::PortWwn, "-portinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadFcoePort,
         .handler = ShowFcoePortInfo},
        {.code = CommandCode{35},
         .form = {"-fcoe", operand::PortWwn, "-portstat"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadFcoeStatistics,
         .handler = ShowFcoeStatistics},
        {.code = CommandCode{36},
         .form = {"-fcoe", operand::PortWwn, "-resetstat"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::ResetFcoeStatistics,
         .handler = ResetFcoeStatistics},
    };
    return Rows;
}

}  // namespace tavro
