// The settings of an Ethernet adapter: showing them, and changing them in a dialogue.
#include "ethernet/commands.h"

#include <optional>
#include <vector>

#include "cli/invocation.h"
#include "cli/questions.h"
#include "console/console.h"
#include "ethernet/closing_rule.h"
#include "ethernet/value_editor.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

using tavroapi::AdapterSetting;
using tavroapi::AdapterSettings;
using tavroapi::OperationCode;

namespace {

// One setting: its title, its number, and how `-setadapinfo` edits it.
struct SettingRow {
    MessageId title{};
    std::size_t number = 0;
    EditKind kind = EditKind::ShowOnly;
};

constexpr SettingRow SettingRows[] = {
    {MessageId::AdapterSetting1, 1, EditKind::List},
    {MessageId::AdapterSetting8, 8, EditKind::List},
    {MessageId::AdapterSetting15, 15, EditKind::List},
    {MessageId::AdapterSetting14, 14, EditKind::List},
    {MessageId::AdapterSetting4, 4, EditKind::List},
    {MessageId::AdapterSetting5, 5, EditKind::List},
    {MessageId::AssignedAddress, 0, EditKind::Address},
    {MessageId::AdapterSetting16, 16, EditKind::List},
    {MessageId::AdapterSetting9, 9, EditKind::List},
    {MessageId::AdapterSetting17, 17, EditKind::List},
    {MessageId::AdapterSetting10, 10, EditKind::Range},
    {MessageId::AdapterSetting25, 25, EditKind::Range},
    {MessageId::AdapterSetting12, 12, EditKind::List},
    {MessageId::AdapterSetting23, 23, EditKind::List},
    {MessageId::AdapterSetting24, 24, EditKind::List},
    {MessageId::AdapterSetting19, 19, EditKind::List},
    {MessageId::AdapterSetting13, 13, EditKind::List},
    {MessageId::AdapterSetting18, 18},
    {MessageId::AdapterSetting2, 2},
    {MessageId::AdapterSetting3, 3},
    {MessageId::AdapterSetting6, 6},
    {MessageId::AdapterSetting7, 7},
    {MessageId::AdapterSetting11, 11},
    {MessageId::AdapterSetting26, 26},
    {MessageId::AdapterSetting27, 27},
    {MessageId::AdapterSetting20, 20},
    {MessageId::AdapterSetting21, 21},
    {MessageId::AdapterSetting22, 22},
    {MessageId::AdapterSetting28, 28},
    {MessageId::AdapterSetting29, 29},
    {MessageId::AdapterSetting30, 30},
};

constexpr const char* NoAddress = "Not Present";

bool IsAvailable(const AdapterSetting& setting) {
    return setting.value != tavroapi::SettingNotAvailable;
}

// The settings that can be changed. Their places, counted from 0, are the numbers that the user
// types.
using ChangeableSettings = std::vector<const SettingRow*>;

ChangeableSettings ChangeableOf(const AdapterSettings& settings) {
    ChangeableSettings changeable;
    for (const SettingRow& row : SettingRows) {
        if (row.kind != EditKind::ShowOnly && IsAvailable(settings.settings.at(row.number))) {
            changeable.push_back(&row);
        }
    }
    return changeable;
}

void ShowNumbered(const AdapterSettings& settings, const ChangeableSettings& changeable) {
    for (std::size_t number = 0; number < changeable.size(); ++number) {
        const SettingRow& row = *changeable[number];
        ShowMessage(row.title, settings.settings.at(row.number).value, Layout::Row,
                    std::to_string(number) + ". ");
    }
}

// The row whose number the answer is, by exact text; null when there is none.
const SettingRow* RowNumbered(const std::string& answer, const ChangeableSettings& changeable) {
    for (std::size_t number = 0; number < changeable.size(); ++number) {
        if (answer == std::to_string(number)) {
            return changeable[number];
        }
    }
    return nullptr;
}

void Edit(AdapterSettings& settings, const SettingRow& row) {
    AdapterSetting& setting = settings.settings.at(row.number);
    if (row.kind == EditKind::Address && setting.value == NoAddress) {
        setting.value = "0";
    }
    EditAdapterSetting(setting, row.title, row.kind);
}

enum class Decision { Confirm, Abort };

// Edits the settings that the user names until he is through.
Decision EditSettings(AdapterSettings& settings, const ChangeableSettings& changeable) {
    std::string answer = AskLine(MessageId::AskFirstSetting);
    while (true) {
        if (answer == "Y" || answer == "y") {
            return Decision::Confirm;
        }
        if (answer == "A" || answer == "a") {
            return Decision::Abort;
        }
        if (const SettingRow* const row = RowNumbered(answer, changeable)) {
            Edit(settings, *row);
        } else {
            ShowNotice(MessageId::ValueRefused);
            console::NoteRefusedAnswer();
        }
        console::EndLine();
        answer = AskLine(MessageId::AskNextSetting);
    }
}

// Shows the edited settings and writes them when the user says so. He is asked once only.
void ConfirmAndWrite(const std::string& mac, AdapterSettings& settings,
                     const ChangeableSettings& changeable) {
    console::EndLine();
    ShowMessage(MessageId::AdapterSettingsTitle, NoValue, Layout::Title);
    console::EndLine();
    ShowNumbered(settings, changeable);
    console::EndLine();
    const std::optional<bool> confirmed = YesOrNo(AskLine(MessageId::AskConfirmation));
    if (!confirmed) {
        ShowSpacedNotice(MessageId::ConfirmationRefused);
        console::NoteRefusedAnswer();
    } else if (*confirmed) {
        DoOperation<OperationCode::WriteAdapterSettings>(mac, settings);
    } else {
        ShowPrompt(MessageId::ChangesDeclined);
    }
}

// Reads the settings; false when that failed, which `failure` and the library's error tell then.
bool ReadSettings(const std::string& mac, AdapterSettings& settings, MessageId failure) {
    const CallOutcome outcome = DoOperation<OperationCode::ReadAdapterSettings>(mac, settings);
    if (outcome == CallOutcome::Failed) {
        ShowFailure(failure);
    }
    return outcome == CallOutcome::Done;
}

// Shows the settings that the adapter of an Ethernet port has. Without the library's entry point
// nothing is shown.
void ShowAdapterSettings(const Invocation& invocation) {
    AdapterSettings settings;
    if (!ReadSettings(invocation.port, settings, MessageId::AdapterSettingsFailed)) {
        return;
    }
    console::EndLine();
    ShowMessage(MessageId::AdapterSettingsTitle, NoValue, Layout::Title);
    console::EndLine();
    for (const SettingRow& row : SettingRows) {
        const AdapterSetting& setting = settings.settings.at(row.number);
        if (IsAvailable(setting)) {
            ShowMessage(row.title, setting.value, Layout::Row);
        }
    }
    PrintClosingRule(Rule78);
}

// Shows the settings that can be changed, lets the user edit one after the other, and writes them
// once confirmed. How the write ends is not reported.
void ChangeAdapterSettings(const Invocation& invocation) {
    AdapterSettings settings;
    if (!ReadSettings(invocation.port, settings, MessageId::ChangeAdapterSettingsFailed)) {
        return;
    }
    console::EndLine();
    ShowMessage(MessageId::AdapterSettingsTitle, "", Layout::Title);
    console::EndLine();
    const ChangeableSettings changeable = ChangeableOf(settings);
    ShowNumbered(settings, changeable);
    console::EndLine();
    if (EditSettings(settings, changeable) == Decision::Confirm) {
        ConfirmAndWrite(invocation.port, settings, changeable);
    } else {
        console::PrintNarrowLine("Abort any changes");
    }
    PrintClosingRule(Rule78);
}

}  // namespace

std::span<const Command> AdapterSettingCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{56},
         .form = {"-ethernet", operand::PortMac, "-getadapinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadAdapterSettings,
         .handler = ShowAdapterSettings},
        {.code = CommandCode{63},
         .form = {"-ethernet", operand::PortMac, "-setadapinfo"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WriteAdapterSettings,
         .handler = ChangeAdapterSettings},
    };
    return Rows;
}

}  // namespace tavro
