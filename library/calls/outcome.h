#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "library/calls/status.h"
#include "library/messages/error_text.h"
#include "tavroapi/inventory_records.h"

namespace tavrolib {

// How a call ended: done, or refused with a status and what the user is told about it.
struct Outcome {
    std::uint32_t status = 0;
    std::optional<tavroapi::ErrorRecord> error{};  // in English where it has the texts below
    ErrorText message{};  // what the error says in every language; unset, it is told as it is
    ErrorText action{};

    bool IsDone() const { return status == 0; }

    // The error in a language.
    std::optional<tavroapi::ErrorRecord> ErrorIn(Language language) const;
};

inline Outcome Done() {
    return {};
}

// A refusal that tells a text of any library's table. Libraries use their `Refused`.
Outcome RefusedWith(std::uint32_t status, ErrorText message, ErrorText action,
                    std::wstring details);

// Makes the refusals of a library in the words of its table. Each library has one in its namespace
// and calls it `Refused`; since it is an object, no library's words are looked up in the table of
// another.
template <const auto& Rows>
struct Refuser {
    using Text = ErrorTextOf<Rows>;

    // A refusal: what happened, what the user can do, and the details, which name things and are
    // the same in every language. A status of the contract's own is given as its number.
    Outcome operator()(std::uint32_t status, Text message, Text action,
                       std::wstring details = {}) const {
        return RefusedWith(status, message.text, action.text, std::move(details));
    }

    Outcome operator()(Status status, Text message, Text action, std::wstring details = {}) const {
        return (*this)(static_cast<std::uint32_t>(status), message, action, std::move(details));
    }
};

}  // namespace tavrolib
