#include "iscsi/boot.h"

#include "adapters/partition_queries.h"
#include "cli/prompts.h"
#include "console/console.h"
#include "iscsi/boot_dialogue.h"
#include "iscsi/boot_secrets.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
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
    const BootSecretsGuard guard(config);
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

}  // namespace

void ShowIscsiBoot(const std::string& mac) {
    ReadAndShow(mac);
}

void SetIscsiBoot(const std::string& mac, EntryCache& cache) {
    if (const auto refusal = BootChangeRefusal(mac)) {
        ShowNotice(*refusal);
        return;
    }
    if (ReadAndShow(mac) == CallOutcome::NotResolved) {
        return;
    }
    ShowMessage(MessageId::IscsiBootDialogue, NoValue, Layout::Row);
    // What is shown is not what is edited: fields that the dialogue does not set travel empty.
    IscsiBootConfig config;
    const BootSecretsGuard guard(config);
    AskIscsiBoot(mac, cache, config);
    switch (DoOperation<OperationCode::WriteIscsiBoot>(mac, config)) {
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

}  // namespace tavro
