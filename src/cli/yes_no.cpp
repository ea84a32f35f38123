#include "cli/yes_no.h"

#include "console/console.h"
#include "mgmt/message.h"

namespace tavro {

namespace {

bool IsYes(const std::string& answer) {
    return answer == "y" || answer == "Y";
}

bool IsNo(const std::string& answer) {
    return answer == "n" || answer == "N";
}

}  // namespace

bool AskYesNo(std::string answer) {
    while (!IsYes(answer) && !IsNo(answer)) {
        ShowMessage(MessageId::AskYesOrNo, NoValue, Layout::Prompt);
        answer = console::ReadLine();
    }
    return IsYes(answer);
}

}  // namespace tavro
