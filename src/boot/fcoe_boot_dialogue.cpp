// The questions of `-fcoe <portWWN> -setbootconfig`.
#include "boot/fcoe_boot_dialogue.h"

#include <algorithm>
#include <list>

#include "cli/questions.h"
#include "cli/validation.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

namespace {

using tavroapi::FcoeBootConfig;
using tavroapi::FcoeBootTarget;
using tavroapi::FcoeLunRecord;
using tavroapi::FcoeTargetRecord;
using tavroapi::OperationCode;

constexpr Choice BootStates[] = {
    {"Y", "Enabled"},  {"y", "Enabled"},           {"N", "Disabled"},
    {"n", "Disabled"}, {"O", "One Time Disabled"}, {"o", "One Time Disabled"},
};

constexpr Refusal FcoeSwitchRefusal = Refusal::Notice(MessageId::AskYesOrNo);

// A number of the configuration, from 0 to a maximum.
struct NumberQuestion {
    std::uint32_t FcoeBootConfig::*number = nullptr;
    std::int32_t maximum = 0;
    Question question;
};

constexpr NumberQuestion NumberQuestions[] = {
    {&FcoeBootConfig::numberC,
     8,
     {MessageId::AskFcoeBootNumberC, Refusal::Notice(MessageId::FcoeBootNumberCRefused)}},
    {&FcoeBootConfig::numberA,
     255,
     {MessageId::AskFcoeBootNumberA, Refusal::Notice(MessageId::FcoeBootNumberARefused)}},
    {&FcoeBootConfig::numberB,
     60,
     {MessageId::AskFcoeBootNumberB, Refusal::Notice(MessageId::FcoeBootNumberBRefused)}},
};

// What the library lists is shown whether it calls the listing a success or not.
void ShowTargets(const std::string& wwn) {
    ShowNotice(MessageId::FcoeBootTargetChoice);
    std::list<FcoeTargetRecord> targets;
    DoOperation<OperationCode::ListFcoeTargets>(wwn, targets);
    ShowMessage(MessageId::FcoeTargetListTitle, wwn, Layout::Title);
    console::ShowEach(targets, [](const FcoeTargetRecord& target) {
        ShowMessage(MessageId::FcoeTargetPortName, target.texts[tavroapi::fcoe_target::PortWwn],
                    Layout::Row);
    });
    console::PrintLine(TabRule65);
}

std::list<FcoeLunRecord> ShowLuns(const std::string& wwn, const std::string& target) {
    std::list<FcoeLunRecord> luns;
    DoOperation<OperationCode::ListFcoeLuns>(wwn, target, luns);
    ShowMessage(MessageId::FcoeLunListTitle, target, Layout::Title);
    console::ShowEach(luns, [](const FcoeLunRecord& lun) {
        ShowMessage(MessageId::FcoeLunItem, lun.texts[tavroapi::fcoe_lun::Item], Layout::Row);
    });
    console::PrintLine(TabRule65);
    return luns;
}

void AskBootTarget(const std::string& wwn, FcoeBootTarget& bootTarget) {
    ShowTargets(wwn);
    bootTarget.target = AskLine(MessageId::AskFcoeBootTarget);
    const std::list<FcoeLunRecord> luns = ShowLuns(wwn, bootTarget.target);
    const auto isListed = [&](const std::string& answer) {
        return std::ranges::any_of(luns, [&](const FcoeLunRecord& lun) {
            return lun.texts[tavroapi::fcoe_lun::Item] == answer;
        });
    };
    bootTarget.lunItem = AskUntil(
        {MessageId::AskFcoeBootLun, Refusal::Notice(MessageId::FcoeBootLunRefused)}, isListed);
    bootTarget.state = AskSwitch({MessageId::AskFcoeBootTargetState, FcoeSwitchRefusal});
}

bool WantsFurtherTarget() {
    return YesOrNo(AskLine(MessageId::AskFurtherFcoeBootTarget)) == true;
}

}  // namespace

void AskFcoeBoot(const std::string& wwn, FcoeBootConfig& config) {
    config.bootState =
        AskChoice({MessageId::AskFcoeBootState, Refusal::Notice(MessageId::FcoeBootStateRefused)},
                  BootStates);
    config.secondSwitch = AskSwitch({MessageId::AskFcoeBootSecondSwitch, FcoeSwitchRefusal});
    for (const NumberQuestion& row : NumberQuestions) {
        config.*row.number = ParseUnsigned(AskNumber(row.question, row.maximum));
    }
    for (FcoeBootTarget& bootTarget : config.targets) {
        AskBootTarget(wwn, bootTarget);
        if (&bootTarget == &config.targets.back() || !WantsFurtherTarget()) {
            break;
        }
    }
}

}  // namespace tavro
