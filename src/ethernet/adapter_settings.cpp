// The settings of an Ethernet adapter: showing them, changing them in a dialogue, exporting them.
#include "ethernet/adapter_settings.h"

#include <optional>
#include <vector>

#include "console/console.h"
#include "console/question.h"
#include "ethernet/closing_rule.h"
#include "ethernet/value_editor.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rules.h"
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

// Shows the settings that can be changed, numbered from 0, and returns them by these numbers.
std::vector<const SettingRow*> ShowChangeableSettings(const AdapterSettings& settings) {
    std::vector<const SettingRow*> shown;
    for (const SettingRow& row : SettingRows) {
        const AdapterSetting& setting = settings.settings.at(row.number);
        if (row.kind != EditKind::ShowOnly && IsAvailable(setting)) {
            ShowMessage(row.title, setting.value, Layout::Row, std::to_string(shown.size()) + ". ");
            shown.push_back(&row);
        }
    }
    return shown;
}

// The row whose number the answer is, by exact text; null when there is none.
const SettingRow* RowNumbered(const std::string& answer,
                              const std::vector<const SettingRow*>& shown) {
    for (std::size_t number = 0; number < shown.size(); ++number) {
        if (answer == std::to_string(number)) {
            return shown[number];
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
Decision EditSettings(AdapterSettings& settings, const std::vector<const SettingRow*>& shown) {
    return console::AskWithRetryPrompt(
        [] { ShowMessage(MessageId::AskFirstSetting, NoValue, Layout::Prompt); },
        [] {
            console::PrintNarrowLine("");
            ShowMessage(MessageId::AskNextSetting, NoValue, Layout::Prompt);
        },
        [&](const std::string& answer) -> std::optional<Decision> {
            if (answer == "Y" || answer == "y") {
                return Decision::Confirm;
            }
            if (answer == "A" || answer == "a") {
                return Decision::Abort;
            }
            if (const SettingRow* const row = RowNumbered(answer, shown)) {
                Edit(settings, *row);
            } else {
                ShowMessage(MessageId::ValueRefused, NoValue, Layout::Notice);
            }
            return std::nullopt;
        });
}

// Shows the edited settings and writes them when the user says so. He is asked once only.
void ConfirmAndWrite(const std::string& mac, AdapterSettings& settings) {
    console::PrintNarrowLine("");
    ShowMessage(MessageId::AdapterSettingsTitle, NoValue, Layout::Title);
    console::PrintNarrowLine("");
    ShowChangeableSettings(settings);
    console::PrintNarrowLine("");
    ShowMessage(MessageId::AskConfirmation, NoValue, Layout::Prompt);
    const std::string answer = console::ReadLine();
    if (answer == "Y" || answer == "y") {
        DoOperation<OperationCode::WriteAdapterSettings>(mac, settings);
    } else if (answer == "N" || answer == "n") {
        ShowMessage(MessageId::ChangesDeclined, NoValue, Layout::Prompt);
    } else {
        console::EndLine();
        ShowMessage(MessageId::ConfirmationRefused, NoValue, Layout::Notice);
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

}  // namespace

void ShowAdapterSettings(const std::string& mac) {
    AdapterSettings settings;
    if (!ReadSettings(mac, settings, MessageId::AdapterSettingsFailed)) {
        return;
    }
    console::PrintNarrowLine("");
    ShowMessage(MessageId::AdapterSettingsTitle, NoValue, Layout::Title);
    console::PrintNarrowLine("");
    for (const SettingRow& row : SettingRows) {
        const AdapterSetting& setting = settings.settings.at(row.number);
        if (IsAvailable(setting)) {
            ShowMessage(row.title, setting.value, Layout::Row);
        }
    }
    PrintClosingRule(Rule78);
}

void ChangeAdapterSettings(const std::string& mac) {
    AdapterSettings settings;
    if (!ReadSettings(mac, settings, MessageId::ChangeAdapterSettingsFailed)) {
        return;
    }
    console::PrintNarrowLine("");
    ShowMessage(MessageId::AdapterSettingsTitle, "", Layout::Title);
    console::PrintNarrowLine("");
    const auto shown = ShowChangeableSettings(settings);
    console::PrintNarrowLine("");
    if (EditSettings(settings, shown) == Decision::Confirm) {
        ConfirmAndWrite(mac, settings);
    } else {
        console::PrintNarrowLine("Abort any changes");
    }
    PrintClosingRule(Rule78);
}

void GetEthernetXml(const std::string& mac) {
    AdapterSettings settings;
    DoOperation<OperationCode::ExportAdapterSettings>(mac, settings);
}

}  // namespace tavro
