#include "partition/personality.h"

#include <optional>

#include "adapters/partition_queries.h"
#include "cli/prompts.h"
#include "console/question.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "partition/confirmation.h"
#include "tavroapi/partition_records.h"

namespace tavro {

namespace {

using tavroapi::OperationCode;
using tavroapi::PersonalitySetting;

// Whether the adapter's functions are Ethernet for good, which is then said.
bool RefusesType(const std::string& adapterType) {
    if (adapterType != "Ethernet") {
        return false;
    }
    ShowNotice(MessageId::PersonalityOfEthernetAdapter);
    return true;
}

// Whether the port is not partitioned; that it is partitioned is said.
bool IsUnpartitioned(std::uint32_t state) {
    if (state == 2 || state == 3) {
        ShowSpacedNotice(MessageId::PersonalityOfPartitionedPort);
    }
    return state == 1;
}

void ShowValue(const PersonalitySetting& setting) {
    console::EndLine();
    ShowMessage(MessageId::PersonalityTitle, "", Layout::Title);
    console::EndLine();
    ShowMessage(MessageId::CurrentPersonality, setting.value, Layout::Row);
}

std::string AskPersonality() {
    return console::Ask([] { ShowPrompt(MessageId::AskPersonality); },
                        [](const std::string& answer) { return answer == "1" || answer == "2"; },
                        [] { ShowSpacedNotice(MessageId::PersonalityRefused); });
}

void WriteSetting(const std::string& mac, PersonalitySetting& setting) {
    switch (DoOperation<OperationCode::WritePersonality>(mac, setting)) {
        case CallOutcome::NotResolved:
            break;
        case CallOutcome::Failed:
            ShowLastError();
            break;
        case CallOutcome::Done:
            if (setting.result == tavroapi::RestartNeededResult) {
                ShowNotice(MessageId::RestartNeeded);
            }
            break;
    }
}

}  // namespace

void ShowPersonality(const std::string& mac) {
    const auto adapterType = GetAdapterType(mac);
    if (!adapterType || RefusesType(*adapterType)) {
        return;
    }
    const auto state = GetPartitionState(mac);
    if (!state || !IsUnpartitioned(*state)) {
        return;
    }
    PersonalitySetting setting;
    switch (DoOperation<OperationCode::ReadPersonality>(mac, setting)) {
        case CallOutcome::NotResolved:
            break;
        case CallOutcome::Failed:
            console::EndLine();
            ShowLastError();
            break;
        case CallOutcome::Done:
            ShowValue(setting);
            break;
    }
}

void SetPersonality(const std::string& mac) {
    const auto state = GetPartitionState(mac);
    const auto adapterType = state ? GetAdapterType(mac) : std::nullopt;
    if (!adapterType || RefusesType(*adapterType) || !IsUnpartitioned(*state)) {
        return;
    }
    ShowPersonality(mac);
    console::EndLine();
    PersonalitySetting setting;
    setting.value = AskPersonality();
    if (!AskConfirmation()) {
        ShowNotice(MessageId::ChangesDeclined);
        return;
    }
    WriteSetting(mac, setting);
}

}  // namespace tavro
