#include "cli/yes_no.h"

#include "cli/prompts.h"
#include "console/console.h"
#include "mgmt/message.h"

namespace tavro {

std::optional<bool> YesOrNo(const std::string& answer) {
    if (answer == "y" || answer == "Y") {
        return true;
    }
    if (answer == "n" || answer == "N") {
        return false;
    }
    return std::nullopt;
}

bool AskYesNo(const std::string& answer) {
    std::optional<bool> verdict = YesOrNo(answer);
    while (!verdict) {
        ShowPrompt(MessageId::AskYesOrNo);
        verdict = YesOrNo(console::ReadLine());
    }
    return *verdict;
}

}  // namespace tavro
