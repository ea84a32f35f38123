// How a port boots from FCoE targets.
#include "boot/commands.h"

#include "boot/change_refusal.h"
#include "boot/fcoe_boot_dialogue.h"
#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"
#include "tavroapi/boot_records.h"

namespace tavro {

namespace {

using tavroapi::FcoeBootConfig;
using tavroapi::FcoeBootTarget;
using tavroapi::OperationCode;

constexpr Row<FcoeBootConfig> TextRows[] = {
    {MessageId::FcoeBootState, &FcoeBootConfig::bootState},
    {MessageId::FcoeBootSecondSwitch, &FcoeBootConfig::secondSwitch},
    {MessageId::FcoeBootCodeVersion, &FcoeBootConfig::bootCodeVersion},
};

// C is shown before A and B.
constexpr struct {
    MessageId label;
    std::uint32_t FcoeBootConfig::*value;
} NumberRows[] = {
    {MessageId::FcoeBootNumberC, &FcoeBootConfig::numberC},
    {MessageId::FcoeBootNumberA, &FcoeBootConfig::numberA},
    {MessageId::FcoeBootNumberB, &FcoeBootConfig::numberB},
};

void ShowConfiguration(const std::string& wwn, const FcoeBootConfig& config) {
    ShowMessage(MessageId::FcoeBootTitle, wwn, Layout::Title);
    ShowRows(config, TextRows);
    for (const auto& row : NumberRows) {
        ShowMessage(row.label, std::to_string(config.*row.value), Layout::Row);
    }
    ShowMessage(MessageId::FcoeBootTargetsTitle, NoValue, Layout::Title);
    ShowMessage(MessageId::FcoeBootTargetColumns, NoValue, Layout::Row);
    console::PrintLine(TabRule67);
    for (const FcoeBootTarget& target : config.targets) {
        console::PrintLine(L"\t" + ToWide(target.target) + L"\t\t" + ToWide(target.lunItem) +
                           L"\t\t" + ToWide(target.state));
    }
    console::PrintLine(Rule78);
}

void ReportFailure() {
    console::EndLine();
    ShowLastError();
}

// Reads the configuration; false after telling why it could not be read.
bool ReadConfiguration(const std::string& wwn, FcoeBootConfig& config) {
    const CallOutcome outcome = DoOperation<OperationCode::ReadFcoeBoot>(wwn, config);
    switch (outcome) {
        case CallOutcome::NotResolved:
            ShowLastError();
            break;
        case CallOutcome::Failed:
            ReportFailure();
            break;
        case CallOutcome::Done:
            break;
    }
    return outcome == CallOutcome::Done;
}

void WriteConfiguration(const std::string& wwn, FcoeBootConfig& config) {
    switch (DoOperation<OperationCode::WriteFcoeBoot>(wwn, config)) {
        case CallOutcome::NotResolved:
            ShowLastError();
            break;
        case CallOutcome::Failed:
            ReportFailure();
            break;
        case CallOutcome::Done:
            ShowSpacedNotice(MessageId::FcoeBootApplied);
            break;
    }
}

// Shows the boot configuration of a port.
void ShowFcoeBoot(const Invocation& invocation) {
    FcoeBootConfig config;
    if (ReadConfiguration(invocation.port, config)) {
        ShowConfiguration(invocation.port, config);
    }
}

// Shows the boot configuration, asks for changes and writes it. A port whose partition state does
// not allow changes is refused.
void SetFcoeBoot(const Invocation& invocation) {
    FcoeBootConfig config;
    if (!ReadConfiguration(invocation.port, config)) {
        return;
    }
    if (const auto refusal = BootChangeRefusal(invocation.port)) {
        ShowSpacedNotice(*refusal);
        return;
    }
    ShowConfiguration(invocation.port, config);
    AskFcoeBoot(invocation.port, config);
    ShowNotice(MessageId::FcoeBootApplying);
    WriteConfiguration(invocation.port, config);
}

}  // namespace

std::span<const Command> FcoeBootCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{42},
         .form = {"-fcoe", operand::PortWwn, "-getbootconfig"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadFcoeBoot,
         .handler = ShowFcoeBoot},
        {.code = CommandCode{43},
         .form = {"-fcoe", operand::PortWwn, "-setbootconfig"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WriteFcoeBoot,
         .handler = SetFcoeBoot},
    };
    return Rows;
}

}  // namespace tavro
