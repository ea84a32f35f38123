// The question that is repeated until its answer is valid: what every dialogue is made of.
//
// The callables: a prompt and a refusal take nothing and show something. `accept` takes the line
// (const std::string&) and returns either a bool (then the question's result is the line) or a
// std::optional<Value> (then its result is the value). A wrong answer never ends a dialogue.
#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "console/console.h"
#include "console/secret.h"

namespace tavro::console {

// Shows first(), then reads lines until one is accepted, showing again() after each that is not.
// For questions whose second prompt differs from the first.
template <typename First, typename Again, typename Accept>
auto AskWithRetryPrompt(First first, Again again, Accept accept) {
    first();
    while (true) {
        std::string line = ReadLine();
        auto verdict = accept(std::as_const(line));
        if constexpr (std::is_same_v<decltype(verdict), bool>) {
            if (verdict) {
                return line;
            }
        } else {
            if (verdict) {
                return *std::move(verdict);
            }
        }
        again();
    }
}

// Shows prompt(), reads a line; a line that is not accepted is answered by refuse() and the same
// prompt again.
template <typename Prompt, typename Accept, typename Refuse>
auto Ask(Prompt prompt, Accept accept, Refuse refuse) {
    return AskWithRetryPrompt(
        prompt,
        [&] {
            refuse();
            prompt();
        },
        accept);
}

// Like AskWithRetryPrompt, for a secret: reads into `secret` (ReadSecret) until accept(secret) is
// true; refused ones are wiped.
template <typename First, typename Again, typename Accept>
void AskSecret(std::string& secret, First first, Again again, Accept accept) {
    first();
    ReadSecret(secret);
    while (!accept(std::as_const(secret))) {
        again();
        ReadSecret(secret);
    }
}

}  // namespace tavro::console
