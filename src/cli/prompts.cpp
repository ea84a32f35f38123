#include "cli/prompts.h"

#include <algorithm>

#include "console/console.h"
#include "mgmt/message.h"

namespace tavro {

void ShowPrompt(MessageId prompt, std::string_view prefix) {
    ShowMessage(prompt, NoValue, Layout::Prompt, prefix);
}

void ShowNotice(MessageId notice) {
    ShowMessage(notice, NoValue, Layout::Notice);
}

void ShowSpacedNotice(MessageId notice) {
    console::EndLine();
    ShowNotice(notice);
}

std::string AskLine(MessageId prompt) {
    ShowPrompt(prompt);
    return console::ReadLine();
}

std::optional<std::string> MeaningOf(std::string_view answer, std::span<const Choice> choices) {
    const auto found = std::ranges::find(choices, answer, &Choice::answer);
    if (found == choices.end()) {
        return std::nullopt;
    }
    return std::string(found->meaning);
}

}  // namespace tavro
