#include "partition/confirmation.h"

#include <optional>

#include "cli/questions.h"
#include "console/console.h"

namespace tavro {

bool AskConfirmation() {
    const std::optional<bool> confirmed = YesOrNo(AskLine(MessageId::AskConfirmation));
    // A refused answer is not asked for again: it is refused until nobody reads any more.
    while (!confirmed) {
        ShowSpacedNotice(MessageId::ConfirmationRefused);
        console::NoteRefusedAnswer();
        console::RequireOutput();
    }
    return *confirmed;
}

}  // namespace tavro
