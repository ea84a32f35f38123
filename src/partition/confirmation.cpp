#include "partition/confirmation.h"

#include "cli/prompts.h"

namespace tavro {

bool AskConfirmation() {
    const std::string answer = AskLine(MessageId::AskConfirmation);
    while (true) {
        if (answer == "Y" || answer == "y") {
            return true;
        }
        if (answer == "N" || answer == "n") {
            return false;
        }
        ShowSpacedNotice(MessageId::ConfirmationRefused);
    }
}

}  // namespace tavro
