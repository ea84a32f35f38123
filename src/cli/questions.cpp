#include "cli/questions.h"

#include <algorithm>

#include "cli/validation.h"
#include "console/secret.h"
#include "console/wipe.h"

namespace tavro {

void ShowRefusal(const Question& question) {
    const Refusal& refusal = question.refusal;
    switch (refusal.kind) {
        case Refusal::Kind::RetryPrompt:
            ShowPrompt(refusal.message);
            console::NoteRefusedAnswer();
            return;
        case Refusal::Kind::Notice:
            ShowNotice(refusal.message);
            break;
        case Refusal::Kind::SpacedNotice:
            ShowSpacedNotice(refusal.message);
            break;
    }
    ShowPrompt(question.prompt, question.prefix);
    console::NoteRefusedAnswer();
}

std::string AskLine(MessageId prompt) {
    ShowPrompt(prompt);
    return console::ReadLine();
}

std::string AskNumber(const Question& question, std::int32_t maximum) {
    return AskUntil(question, [maximum](const std::string& answer) {
        return IsNumberInRange(answer, maximum);
    });
}

std::string AskDigits(const Question& question) {
    return AskUntil(question, [](const std::string& answer) { return !HasNonDigit(answer); });
}

std::string AskIPv4Address(MessageId prompt) {
    return AskUntil(
        Question{.prompt = prompt, .refusal = Refusal::RetryPrompt(MessageId::InvalidAddress)},
        IsValidIPv4);
}

std::optional<std::string> MeaningOf(std::string_view answer, std::span<const Choice> choices) {
    const auto found = std::ranges::find(choices, answer, &Choice::answer);
    if (found == choices.end()) {
        return std::nullopt;
    }
    return std::string(found->meaning);
}

std::string AskChoice(const Question& question, std::span<const Choice> choices) {
    return AskUntil(question,
                    [choices](const std::string& answer) { return MeaningOf(answer, choices); });
}

std::optional<bool> YesOrNo(const std::string& answer) {
    if (answer == "y" || answer == "Y") {
        return true;
    }
    if (answer == "n" || answer == "N") {
        return false;
    }
    return std::nullopt;
}

bool AskDecision(const Question& question) {
    return AskUntil(question, YesOrNo);
}

bool AskYesNo(const std::string& answer) {
    constexpr Question YesOrNoQuestion = {
        .prompt = MessageId::AskYesOrNo,
        .refusal = Refusal::RetryPrompt(MessageId::AskYesOrNo),
    };
    const std::optional<bool> decision = YesOrNo(answer);
    if (decision) {
        return *decision;
    }
    console::NoteRefusedAnswer();
    return AskDecision(YesOrNoQuestion);
}

const char* SwitchText(bool isOn) {
    return isOn ? "Enabled" : "Disabled";
}

std::string AskSwitch(const Question& question) {
    return SwitchText(AskDecision(question));
}

void AskSecret(std::string& secret, const Question& question, bool (*accept)(const std::string&)) {
    ShowPrompt(question.prompt, question.prefix);
    console::ReadSecret(secret);
    while (!accept(secret)) {
        ShowRefusal(question);
        console::ReadSecret(secret);
    }
}

void AskConfirmedSecret(std::string& secret, MessageId prompt, MessageId confirmation) {
    std::string repeated;
    const console::SecretGuard guard(repeated);
    while (true) {
        ShowPrompt(prompt);
        console::ReadSecret(secret);
        ShowPrompt(confirmation);
        console::ReadSecret(repeated);
        if (secret == repeated) {
            return;
        }
        console::NoteRefusedAnswer();
    }
}

}  // namespace tavro
