#include "fcoe/boot.h"

#include "adapters/partition_queries.h"
#include "cli/prompts.h"
#include "console/console.h"
#include "fcoe/boot_dialogue.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
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
    {MessageId::FcoeBootText3, &FcoeBootConfig::libraryText3},
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

}  // namespace

void ShowFcoeBoot(const std::string& wwn) {
    FcoeBootConfig config;
    if (ReadConfiguration(wwn, config)) {
        ShowConfiguration(wwn, config);
    }
}

void SetFcoeBoot(const std::string& wwn) {
    FcoeBootConfig config;
    if (!ReadConfiguration(wwn, config)) {
        return;
    }
    if (const auto refusal = BootChangeRefusal(wwn)) {
        ShowSpacedNotice(*refusal);
        return;
    }
    ShowConfiguration(wwn, config);
    AskFcoeBoot(wwn, config);
    ShowNotice(MessageId::FcoeBootApplying);
    WriteConfiguration(wwn, config);
}

}  // namespace tavro
