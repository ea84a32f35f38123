// Changing the data center bridging of an FCoE port in a dialogue.
#include "fcoe/dcb_dialogue.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "cli/prompts.h"
#include "cli/yes_no.h"
#include "console/console.h"
#include "console/question.h"
#include "fcoe/dcb.h"
#include "fcoe/dcb_text.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::DcbConfig;
using tavroapi::OperationCode;

namespace {

constexpr std::size_t DriverText = 7;
constexpr std::string_view ConfigurableDrivers[] = {"elxcna.sys", "lpfc"};

bool IsConfigurable(const tavroapi::FcoePortRecord& port) {
    return std::ranges::find(ConfigurableDrivers, port.texts[DriverText]) !=
           std::end(ConfigurableDrivers);
}

bool AskDecision(MessageId question, MessageId refusal = MessageId::AskYesOrNo) {
    return console::Ask([&] { ShowPrompt(question); }, YesOrNo, [&] { ShowSpacedNotice(refusal); });
}

// The line end of the answer to the question before is still unread; it is taken here, once.
std::string AskPriorities() {
    const auto prompt = [] { ShowPrompt(MessageId::AskPriorities); };
    const std::string list = console::AskWithRetryPrompt(
        [&] {
            prompt();
            console::SkipCharacter();
        },
        [&] {
            console::EndLine();
            console::PrintLine(L"\t\t Please enter in a specified format");
            prompt();
        },
        [](const std::string& answer) { return answer.find(',') != std::string::npos; });
    return PriorityListFromAnswer(list);
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
        wasRefused = true;
    }
}

void ChangeGroupMap(DcbConfig& config) {
    if (!AskDecision(MessageId::AskChangeGroupMap)) {
        ShowNotice(MessageId::GroupMapKept);
        return;
    }
    ShowPrompt(MessageId::AskGroupMap);
    config.priorityGroupMap = console::ReadLine();
}

void ChangePriorityMap(DcbConfig& config) {
    if (!AskDecision(MessageId::AskChangePriorityMap)) {
        ShowNotice(MessageId::PriorityMapKept);
        return;
    }
    ShowPrompt(MessageId::PriorityMapHint);
    ShowPrompt(MessageId::AskPriorityMap);
    config.priorityMap = PriorityMapFromAnswer(console::ReadLine());
}

void ReportNoChange(const std::string& wwn) {
    console::PrintLine(L"\t\tNo Changes made ");
    ShowDcbConfig(wwn);
}

// The status of the write decides nothing: what is shown here is what scripts wait for.
void Apply(const std::string& wwn, DcbConfig& config) {
    DoOperation<OperationCode::WriteDcbConfig>(wwn, config);
    console::PrintLine(L"\t\tApplying Configuration ...");
    console::EndLine();
    console::PrintLine(L"\t\tDCB Configuration Applied!! ");
}

}  // namespace

void ChangeDcbConfig(const std::string& wwn) {
    tavroapi::FcoePortRecord port;
    if (DoOperation<OperationCode::ReadFcoePort>(wwn, port) != CallOutcome::Done) {
        ShowLastError();
        return;
    }
    if (!IsConfigurable(port)) {
        ShowSpacedNotice(MessageId::DcbDriverRefused);
        return;
    }
    DcbConfig config;
    if (!ReadAndShowDcbConfig(wwn, config)) {
        return;
    }
    if (!AskDecision(MessageId::AskChangeDcb, MessageId::ChangeAnswerRefused)) {
        ReportNoChange(wwn);
        return;
    }
    config.state = AskDecision(MessageId::AskEnableDcb) ? "Enable" : "Disable";
    ChangePriorities(config);
    ChangeGroupMap(config);
    ChangePriorityMap(config);
    Apply(wwn, config);
}

}  // namespace tavro
