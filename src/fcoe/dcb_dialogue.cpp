// Changing the data center bridging of an FCoE port in a dialogue.
#include "fcoe/commands.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "cli/invocation.h"
#include "cli/questions.h"
#include "console/console.h"
#include "fcoe/dcb.h"
#include "fcoe/dcb_text.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::DcbConfig;
using tavroapi::OperationCode;

namespace {

constexpr std::string_view ConfigurableDrivers[] = {"elxcna.sys", "lpfc"};

constexpr Refusal NeitherYesNorNo = Refusal::SpacedNotice(MessageId::AskYesOrNo);

bool IsConfigurable(const tavroapi::FcoePortRecord& port) {
    return std::ranges::find(ConfigurableDrivers, port.texts[tavroapi::fcoe_port::Driver]) !=
           std::end(ConfigurableDrivers);
}

// The line end of the answer to the question before is still unread; it is taken here, once.
std::string AskPriorities() {
    ShowPrompt(MessageId::AskPriorities);
    console::SkipCharacter();
    std::string list = console::ReadLine();
    while (list.find(',') == std::string::npos) {
        console::EndLine();
        console::PrintLine(L"\t\t Please enter in a specified format");
        console::NoteRefusedAnswer();
        list = AskLine(MessageId::AskPriorities);
    }
    return PriorityListFromAnswer(std::move(list));
}

// Once an answer was refused, a list alone does not end the question: only a "no" does.
void ChangePriorities(DcbConfig& config) {
    bool wasRefused = false;
    while (true) {
        ShowPrompt(MessageId::AskChangePriorities);
        const std::optional<bool> change = YesOrNo(console::ReadLineLeavingLineEnd());
        if (change == true) {
            config.priorities = AskPriorities();
            if (!wasRefused) {
                return;
            }
            continue;
        }
        console::SkipCharacter();
        if (change == false) {
            console::EndLine();
            console::PrintLine(L"\t\tDefault Values intact");
            return;
        }
        ShowSpacedNotice(MessageId::AskYesOrNo);
        console::NoteRefusedAnswer();
        wasRefused = true;
    }
}

void ChangeGroupMap(DcbConfig& config) {
    if (!AskDecision({MessageId::AskChangeGroupMap, NeitherYesNorNo})) {
        ShowNotice(MessageId::GroupMapKept);
        return;
    }
    config.priorityGroupMap = AskLine(MessageId::AskGroupMap);
}

void ChangePriorityMap(DcbConfig& config) {
    if (!AskDecision({MessageId::AskChangePriorityMap, NeitherYesNorNo})) {
        ShowNotice(MessageId::PriorityMapKept);
        return;
    }
    ShowPrompt(MessageId::PriorityMapHint);
    config.priorityMap = PriorityMapFromAnswer(AskLine(MessageId::AskPriorityMap));
}

void ReportNoChange(const std::string& wwn) {
    console::PrintLine(L"\t\tNo Changes made ");
    DcbConfig config;
    ReadAndShowDcbConfig(wwn, config);
}

// The status of the write decides nothing: what is shown here is what scripts wait for.
void Apply(const std::string& wwn, DcbConfig& config) {
    DoOperation<OperationCode::WriteDcbConfig>(wwn, config);
    console::PrintLine(L"\t\tApplying Configuration ...");
    console::EndLine();
    console::PrintLine(L"\t\tDCB Configuration Applied!! ");
}

// Shows how data center bridging is configured on an FCoE port, asks what is to change, and applies
// it. Only for ports of drivers that can be configured.
void ChangeDcbConfig(const Invocation& invocation) {
    tavroapi::FcoePortRecord port;
    if (DoOperation<OperationCode::ReadFcoePort>(invocation.port, port) != CallOutcome::Done) {
        ShowLastError();
        return;
    }
    if (!IsConfigurable(port)) {
        ShowSpacedNotice(MessageId::DcbDriverRefused);
        return;
    }
    DcbConfig config;
    if (!ReadAndShowDcbConfig(invocation.port, config)) {
        return;
    }
    if (!AskDecision(
            {MessageId::AskChangeDcb, Refusal::SpacedNotice(MessageId::ChangeAnswerRefused)})) {
        ReportNoChange(invocation.port);
        return;
    }
    config.state = AskDecision({MessageId::AskEnableDcb, NeitherYesNorNo}) ? "Enable" : "Disable";
    ChangePriorities(config);
    ChangeGroupMap(config);
    ChangePriorityMap(config);
    Apply(invocation.port, config);
}

}  // namespace

std::span<const Command> DcbDialogueCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{40},
         .form = {"-fcoe", operand::PortWwn, "-setdcb"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WriteDcbConfig,
         .handler = ChangeDcbConfig},
    };
    return Rows;
}

}  // namespace tavro
