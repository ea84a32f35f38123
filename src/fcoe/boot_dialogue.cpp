// The questions of `-fcoe <portWWN> -setbootconfig`.
#include "fcoe/boot_dialogue.h"

#include <algorithm>
#include <list>

#include "cli/prompts.h"
#include "cli/validation.h"
#include "cli/yes_no.h"
#include "console/question.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rules.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

namespace {

using tavroapi::FcoeBootConfig;
using tavroapi::FcoeBootTarget;
using tavroapi::FcoeLunRecord;
using tavroapi::FcoeTargetRecord;
using tavroapi::OperationCode;

constexpr std::int32_t HighestNumberA = 255;
constexpr std::int32_t HighestNumberB = 60;
constexpr std::int32_t HighestNumberC = 8;

// The text of each record that the dialogue shows.
constexpr std::size_t ShownTargetText = 2;
constexpr std::size_t ShownLunText = 0;

constexpr Choice BootStates[] = {
    {"Y", "Enabled"},  {"y", "Enabled"},           {"N", "Disabled"},
    {"n", "Disabled"}, {"O", "One Time Disabled"}, {"o", "One Time Disabled"},
};

constexpr Choice Switches[] = {
    {"Y", "Enabled"},
    {"y", "Enabled"},
    {"N", "Disabled"},
    {"n", "Disabled"},
};

template <class Accept>
auto AskUntil(MessageId prompt, Accept accept, MessageId refusal) {
    return console::Ask([=] { ShowPrompt(prompt); }, accept, [=] { ShowNotice(refusal); });
}

std::string AskChoice(MessageId prompt, std::span<const Choice> choices, MessageId refusal) {
    const auto chosen = [=](const std::string& answer) { return MeaningOf(answer, choices); };
    return AskUntil(prompt, chosen, refusal);
}

std::uint32_t AskNumber(MessageId prompt, std::int32_t maximum, MessageId refusal) {
    const auto isInRange = [=](const std::string& answer) {
        return IsNumberInRange(answer, maximum);
    };
    return ParseUnsigned(AskUntil(prompt, isInRange, refusal));
}

// What the library lists is shown whether it calls the listing a success or not.
void ShowTargets(const std::string& wwn) {
    ShowNotice(MessageId::FcoeBootTargetChoice);
    std::list<FcoeTargetRecord> targets;
    DoOperation<OperationCode::ListFcoeTargets>(wwn, targets);
    ShowMessage(MessageId::FcoeTargetListTitle, wwn, Layout::Title);
    console::ShowEach(targets, [](const FcoeTargetRecord& target) {
        ShowMessage(MessageId::FcoeTargetPortName, target.texts[ShownTargetText], Layout::Row);
    });
    console::PrintLine(TabRule65);
}

std::list<FcoeLunRecord> ShowLuns(const std::string& wwn, const std::string& target) {
    std::list<FcoeLunRecord> luns;
    DoOperation<OperationCode::ListFcoeLuns>(wwn, target, luns);
    ShowMessage(MessageId::FcoeLunListTitle, target, Layout::Title);
    console::ShowEach(luns, [](const FcoeLunRecord& lun) {
        ShowMessage(MessageId::FcoeLunItem, lun.texts[ShownLunText], Layout::Row);
    });
    console::PrintLine(TabRule65);
    return luns;
}

void AskBootTarget(const std::string& wwn, FcoeBootTarget& bootTarget) {
    ShowTargets(wwn);
    bootTarget.target = AskLine(MessageId::AskFcoeBootTarget);
    const std::list<FcoeLunRecord> luns = ShowLuns(wwn, bootTarget.target);
    const auto isListed = [&](const std::string& answer) {
        return std::ranges::any_of(
            luns, [&](const FcoeLunRecord& lun) { return lun.texts[ShownLunText] == answer; });
    };
    bootTarget.lunItem =
        AskUntil(MessageId::AskFcoeBootLun, isListed, MessageId::FcoeBootLunRefused);
    bootTarget.state =
        AskChoice(MessageId::AskFcoeBootTargetState, Switches, MessageId::AskYesOrNo);
}

bool WantsFurtherTarget() {
    return YesOrNo(AskLine(MessageId::AskFurtherFcoeBootTarget)) == true;
}

}  // namespace

void AskFcoeBoot(const std::string& wwn, FcoeBootConfig& config) {
    config.bootState =
        AskChoice(MessageId::AskFcoeBootState, BootStates, MessageId::FcoeBootStateRefused);
    config.secondSwitch =
        AskChoice(MessageId::AskFcoeBootSecondSwitch, Switches, MessageId::AskYesOrNo);
    config.numberC =
        AskNumber(MessageId::AskFcoeBootNumberC, HighestNumberC, MessageId::FcoeBootNumberCRefused);
    config.numberA =
        AskNumber(MessageId::AskFcoeBootNumberA, HighestNumberA, MessageId::FcoeBootNumberARefused);
    config.numberB =
        AskNumber(MessageId::AskFcoeBootNumberB, HighestNumberB, MessageId::FcoeBootNumberBRefused);
    for (FcoeBootTarget& bootTarget : config.targets) {
        AskBootTarget(wwn, bootTarget);
        if (&bootTarget == &config.targets.back() || !WantsFurtherTarget()) {
            break;
        }
    }
}

}  // namespace tavro
