// What an iSCSI port tells of itself.
#include "iscsi/commands.h"

#include "cli/invocation.h"
#include "console/console.h"
#include "iscsi/phrases.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

namespace iscsi_port = tavroapi::iscsi_port;
namespace iscsi_defaults = tavroapi::iscsi_defaults;
namespace iscsi_statistics = tavroapi::iscsi_statistics;

constexpr std::string_view DriverWithoutStatistics = "bnx2i";

constexpr TextRow PortRows[] = {
    {MessageId::DriverName, iscsi_port::Driver},
    {MessageId::DriverVersion, iscsi_port::DriverVersion},
    {MessageId::FirmwareVersion, iscsi_port::FirmwareVersion},
    {MessageId::IscsiPortMac, iscsi_port::Mac},
    {MessageId::SerialNumber, iscsi_port::SerialNumber},
    {MessageId::ModelName, iscsi_port::ModelName},
    {MessageId::IscsiPortLinkStatus, iscsi_port::LinkStatus},
    {MessageId::IscsiPortLinkSpeed, iscsi_port::LinkSpeed},
    {MessageId::IscsiPortDhcp, iscsi_port::Dhcp},
    {MessageId::IscsiPortAddress, iscsi_port::Address},
    {MessageId::IscsiPortSubnetMask, iscsi_port::SubnetMask},
    {MessageId::IscsiPortGateway, iscsi_port::Gateway},
    {MessageId::IscsiPortVlan, iscsi_port::Vlan},
    {MessageId::IscsiPortVlanId, iscsi_port::VlanId},
    {MessageId::IscsiPortVlanPriority, iscsi_port::VlanPriority},
    {MessageId::IscsiPortIPv6Dhcp, iscsi_port::DhcpIPv6},
    {MessageId::MaximumFrameSize, iscsi_port::MaximumFrameSize},
    {MessageId::IscsiPortIPv6Address, iscsi_port::AddressIPv6},
    {MessageId::IscsiPortIPv6PrefixLength, iscsi_port::PrefixLengthIPv6},
    {MessageId::IscsiPortIPv6Gateway, iscsi_port::GatewayIPv6},
    {MessageId::IscsiPortActiveSessions, iscsi_port::ActiveSessions},
};

constexpr TextRow DefaultRows[] = {
    {MessageId::DefaultMaxConnections, iscsi_defaults::MaxConnections},
    {MessageId::DefaultInitialR2T, iscsi_defaults::InitialR2T},
    {MessageId::DefaultImmediateData, iscsi_defaults::ImmediateData},
    {MessageId::DefaultMaxBurstLength, iscsi_defaults::MaxBurstLength},
    {MessageId::DefaultFirstBurstLength, iscsi_defaults::FirstBurstLength},
    {MessageId::DefaultTimeToWait, iscsi_defaults::TimeToWait},
    {MessageId::DefaultTimeToRetain, iscsi_defaults::TimeToRetain},
    {MessageId::DefaultMaxOutstandingR2T, iscsi_defaults::MaxOutstandingR2T},
    {MessageId::DefaultDataPduInOrder, iscsi_defaults::DataPduInOrder},
    {MessageId::DefaultDataSequenceInOrder, iscsi_defaults::DataSequenceInOrder},
    {MessageId::DefaultErrorRecoveryLevel, iscsi_defaults::ErrorRecoveryLevel},
    {MessageId::DefaultMaxReceiveLength, iscsi_defaults::MaxReceiveLength},
    {MessageId::DefaultHeaderDigest, iscsi_defaults::HeaderDigest},
    {MessageId::DefaultDataDigest, iscsi_defaults::DataDigest},
};

constexpr TextRow StatisticsRows[] = {
    {MessageId::StatisticsBytesSent, iscsi_statistics::BytesSent},
    {MessageId::StatisticsBytesReceived, iscsi_statistics::BytesReceived},
    {MessageId::StatisticsPdusSent, iscsi_statistics::PdusSent},
    {MessageId::StatisticsPdusReceived, iscsi_statistics::PdusReceived},
    {MessageId::StatisticsScsiCommands, iscsi_statistics::ScsiCommands},
    {MessageId::StatisticsScsiResponses, iscsi_statistics::ScsiResponses},
    {MessageId::StatisticsReadyToTransfer, iscsi_statistics::ReadyToTransfer},
    {MessageId::StatisticsTaskCommands, iscsi_statistics::TaskCommands},
    {MessageId::StatisticsLogins, iscsi_statistics::Logins},
    {MessageId::StatisticsLogouts, iscsi_statistics::Logouts},
    {MessageId::StatisticsNopsSent, iscsi_statistics::NopsSent},
    {MessageId::StatisticsNopsReceived, iscsi_statistics::NopsReceived},
    {MessageId::StatisticsDigestErrors, iscsi_statistics::DigestErrors},
    {MessageId::StatisticsConnectionErrors, iscsi_statistics::ConnectionErrors},
};

// Whether the port's driver is known to be one that keeps statistics.
bool KeepsStatistics(const std::string& mac) {
    tavroapi::IscsiPortRecord port;
    const CallOutcome outcome =
        DoOperation<OperationCode::ReadIscsiPort>(mac, port, StatusUse::Ignore);
    return outcome == CallOutcome::Done &&
           port.texts[iscsi_port::Driver] != DriverWithoutStatistics;
}

void ShowStatisticsUnsupported() {
    console::EndLine();
    console::PrintLine(L" This adapter does not support for iSCSI port statistics yet! ");
    console::EndLine();
}

// Shows the port's information.
void ShowIscsiPort(const Invocation& invocation) {
    tavroapi::IscsiPortRecord port;
    if (DoOperation<OperationCode::ReadIscsiPort>(invocation.port, port) != CallOutcome::Done) {
        ShowFailure(MessageId::IscsiPortInfoFailed);
        return;
    }
    ShowMessage(MessageId::IscsiPortTitle, port.texts[iscsi_port::Mac], Layout::Title);
    ShowRows(port, PortRows);
    ShowClosingRules();
}

// Shows the port's statistics. Says so when the port's driver does not keep any, or cannot be told.
void ShowIscsiStatistics(const Invocation& invocation) {
    if (!CanDoOperation()) {
        ShowFailure(MessageId::StatisticsFailed);
        return;
    }
    if (!KeepsStatistics(invocation.port)) {
        ShowStatisticsUnsupported();
        ShowFailure(MessageId::StatisticsFailed);
        return;
    }
    tavroapi::IscsiParameterRecord statistics;
    if (DoOperation<OperationCode::ReadIscsiStatistics>(invocation.port, statistics) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::StatisticsFailed);
        return;
    }
    ShowMessage(MessageId::StatisticsTitle, invocation.port, Layout::Title);
    ShowRows(statistics, StatisticsRows);
    console::PrintLine(TabRule65);
    ShowMessage(MessageId::StatisticsNote);
    console::PrintLine(Rule78);
}

// Shows the port's default iSCSI parameters.
void ShowIscsiDefaults(const Invocation& invocation) {
    tavroapi::IscsiParameterRecord defaults;
    if (DoOperation<OperationCode::ReadIscsiDefaults>(invocation.port, defaults) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::IscsiDefaultsFailed);
        return;
    }
    ShowMessage(MessageId::IscsiDefaultsTitle, invocation.port, Layout::Title);
    ShowRows(defaults, DefaultRows);
    ShowClosingRules();
}

}  // namespace

std::span<const Command> IscsiPortCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{6},
         .form = {"-iscsi", operand::PortMac, "-portinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadIscsiPort,
         .handler = ShowIscsiPort},
        {.code = CommandCode{7},
         .form = {"-iscsi", operand::PortMac, "-portstat"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadIscsiStatistics,
         .handler = ShowIscsiStatistics},
        {.code = CommandCode{8},
         .form = {"-iscsi", operand::PortMac, "-defparam"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadIscsiDefaults,
         .handler = ShowIscsiDefaults},
    };
    return Rows;
}

}  // namespace tavro
