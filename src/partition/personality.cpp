#include "partition/commands.h"

#include <optional>

#include "adapters/partition_queries.h"
#include "cli/invocation.h"
#include "cli/questions.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "partition/confirmation.h"
#include "tavroapi/codes.h"
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
    if (state == tavroapi::PartitionedForGood || state == tavroapi::Partitioned) {
        ShowSpacedNotice(MessageId::PersonalityOfPartitionedPort);
    }
    return state == tavroapi::NotPartitioned;
}

void ShowValue(const PersonalitySetting& setting) {
    console::EndLine();
    ShowMessage(MessageId::PersonalityTitle, "", Layout::Title);
    console::EndLine();
    ShowMessage(MessageId::CurrentPersonality, setting.value, Layout::Row);
}

void WriteSetting(const std::string& mac, PersonalitySetting& setting) {
    switch (DoOperation<OperationCode::WritePersonality>(mac, setting)) {
        case CallOutcome::NotResolved:
            break;
        case CallOutcome::Failed:
            ShowLastError();
            break;
        case CallOutcome::Done:
            if (setting.result == tavroapi::AppliedAtRestart) {
                ShowNotice(MessageId::RestartNeeded);
            }
            break;
    }
}

// Shows the port's personality.
void ShowPersonality(const Invocation& invocation) {
    const auto adapterType = GetAdapterType(invocation.port);
    if (!adapterType || RefusesType(*adapterType)) {
        return;
    }
    const auto state = GetPartitionState(invocation.port);
    if (!state || !IsUnpartitioned(*state)) {
        return;
    }
    PersonalitySetting setting;
    switch (DoOperation<OperationCode::ReadPersonality>(invocation.port, setting)) {
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

// Shows the port's personality, asks for another one and writes it once it is confirmed.
void SetPersonality(const Invocation& invocation) {
    const auto state = GetPartitionState(invocation.port);
    const auto adapterType = state ? GetAdapterType(invocation.port) : std::nullopt;
    if (!adapterType || RefusesType(*adapterType) || !IsUnpartitioned(*state)) {
        return;
    }
    ShowPersonality(invocation);
    console::EndLine();
    PersonalitySetting setting;
    setting.value =
        AskUntil({MessageId::AskPersonality, Refusal::SpacedNotice(MessageId::PersonalityRefused)},
                 [](const std::string& answer) { return answer == "1" || answer == "2"; });
    if (!AskConfirmation()) {
        ShowNotice(MessageId::ChangesDeclined);
        return;
    }
    WriteSetting(invocation.port, setting);
}

}  // namespace

std::span<const Command> PersonalityCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{53},
         .form = {"-res", operand::PortMac, "-get"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadPersonality,
         .handler = ShowPersonality},
        {.code = CommandCode{54},
         .form = {"-res", operand::PortMac, "-set"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WritePersonality,
         .handler = SetPersonality},
    };
    return Rows;
}

}  // namespace tavro
