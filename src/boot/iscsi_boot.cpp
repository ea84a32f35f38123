// How a port boots from iSCSI targets.
#include "boot/commands.h"

#include "boot/change_refusal.h"
#include "boot/iscsi_boot_dialogue.h"
#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/record_secrets.h"
#include "mgmt/rows.h"
#include "platform/crash_dump.h"
#include "tavroapi/boot_records.h"

namespace tavro {

namespace {

using tavroapi::IscsiBootConfig;
using tavroapi::OperationCode;
namespace position = tavroapi::iscsi_boot;

constexpr TextRow GeneralRows[] = {
    {MessageId::IscsiBootTcpIpByDhcp, position::TcpIpByDhcp},
    {MessageId::IscsiBootParametersByDhcp, position::ParametersByDhcp},
    {MessageId::IscsiBootLinkUpDelay, position::LinkUpDelay},
    {MessageId::IscsiBootRetryCount, position::RetryCount},
};

constexpr TextRow InitiatorRows[] = {
    {MessageId::IscsiBootIpAddress, position::IpAddress},
    {MessageId::IscsiBootSubnetMask, position::SubnetMask},
    {MessageId::IscsiBootGateway, position::Gateway},
    {MessageId::IscsiBootInitiatorName, position::InitiatorName},
};

constexpr TextRow FirstTargetRows[] = {
    {MessageId::FirstBootTargetUsed, position::FirstTarget + position::TargetUsed},
    {MessageId::FirstBootTargetAddress, position::FirstTarget + position::TargetAddress},
    {MessageId::FirstBootTargetPort, position::FirstTarget + position::TargetPort},
    {MessageId::FirstBootTargetLun, position::FirstTarget + position::TargetLun},
    {MessageId::FirstBootTargetName, position::FirstTarget + position::TargetName},
};

constexpr TextRow SecondTargetRows[] = {
    {MessageId::SecondBootTargetUsed, position::SecondTarget + position::TargetUsed},
    {MessageId::SecondBootTargetAddress, position::SecondTarget + position::TargetAddress},
    {MessageId::SecondBootTargetPort, position::SecondTarget + position::TargetPort},
    {MessageId::SecondBootTargetLun, position::SecondTarget + position::TargetLun},
    {MessageId::SecondBootTargetName, position::SecondTarget + position::TargetName},
};

constexpr TextRow BindingRows[] = {
    {MessageId::IscsiBootAddressBinding, position::AddressBinding},
};
constexpr TextRow BoundAddressRows[] = {
    {MessageId::IscsiBootBoundAddress, position::BoundAddress},
};
constexpr TextRow LastRows[] = {
    {MessageId::IscsiBootTargetIsFirstDisk, position::TargetIsFirstDisk},
    {MessageId::IscsiBootFromTarget, position::BootFromTarget},
};

void ShowConfiguration(const std::string& mac, const IscsiBootConfig& config) {
    ShowMessage(MessageId::IscsiBootTitle, mac, Layout::Title);
    ShowSectionTitle(MessageId::IscsiBootGeneralSection);
    ShowRows(config, GeneralRows);
    ShowSectionTitle(MessageId::IscsiBootInitiatorSection);
    ShowRows(config, InitiatorRows);
    ShowSectionTitle(MessageId::FirstBootTargetSection);
    ShowRows(config, FirstTargetRows);
    ShowSectionTitle(MessageId::SecondBootTargetSection);
    ShowRows(config, SecondTargetRows);
    ShowSectionTitle(MessageId::IscsiBootOptionsSection);
    ShowRows(config, BindingRows);
    if (config.texts[position::AddressBinding] == "Enabled") {
        ShowRows(config, BoundAddressRows);
    }
    ShowRows(config, LastRows);
}

// Reads and shows the configuration, or tells why not.
CallOutcome ReadAndShow(const std::string& mac) {
    platform::ForbidCrashDumps();
    IscsiBootConfig config;
    const RecordSecretsGuard guard(config);
    const CallOutcome outcome = DoOperation<OperationCode::ReadIscsiBoot>(mac, config);
    switch (outcome) {
        case CallOutcome::NotResolved:
            ShowLastError();
            break;
        case CallOutcome::Failed:
            console::PrintLine(L"iSCSI Get Boot Config Failed");
            break;
        case CallOutcome::Done:
            ShowConfiguration(mac, config);
            break;
    }
    return outcome;
}

// Shows the boot configuration of a port.
void ShowIscsiBoot(const Invocation& invocation) {
    ReadAndShow(invocation.port);
}

// Shows the boot configuration, asks for a new one and writes it. A port whose partition state does
// not allow changes is refused before anything else.
void SetIscsiBoot(const Invocation& invocation) {
    if (const auto refusal = BootChangeRefusal(invocation.port)) {
        ShowNotice(*refusal);
        return;
    }
    if (ReadAndShow(invocation.port) == CallOutcome::NotResolved) {
        return;
    }
    ShowMessage(MessageId::IscsiBootDialogue, NoValue, Layout::Row);
    // What is shown is not what is edited: fields that the dialogue does not set travel empty.
    IscsiBootConfig config;
    const RecordSecretsGuard guard(config);
    AskIscsiBoot(invocation.port, config);
    switch (DoOperation<OperationCode::WriteIscsiBoot>(invocation.port, config)) {
        case CallOutcome::NotResolved:
            ShowLastError();
            break;
        case CallOutcome::Failed:
            ShowFailure(MessageId::IscsiBootWriteFailed);
            break;
        case CallOutcome::Done:
            break;
    }
}

}  // namespace

std::span<const Command> IscsiBootCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{28},
         .form = {"-iscsi", operand::PortMac, "-getbootconfig"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadIscsiBoot,
         .handler = ShowIscsiBoot},
        {.code = CommandCode{29},
         .form = {"-iscsi", operand::PortMac, "-setbootconfig"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WriteIscsiBoot,
         .handler = SetIscsiBoot},
    };
    return Rows;
}

}  // namespace tavro
