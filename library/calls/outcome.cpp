#include "library/calls/outcome.h"

namespace tavrolib {

std::optional<tavroapi::ErrorRecord> Outcome::ErrorIn(Language language) const {
    std::optional<tavroapi::ErrorRecord> told = error;
    if (told && message.IsSet()) {
        told->message = message.In(language);
        told->action = action.In(language);
    }
    return told;
}

Outcome RefusedWith(std::uint32_t status, ErrorText message, ErrorText action,
                    std::wstring details) {
    Outcome outcome{status, tavroapi::ErrorRecord{}, message, action};
    outcome.error->code = status;
    outcome.error->details = std::move(details);
    outcome.error = outcome.ErrorIn(Language::English);
    return outcome;
}

}  // namespace tavrolib
