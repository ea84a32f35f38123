#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "console/redirect.h"
#include "twin/answers/answer_book.h"

namespace tavrohost {

// What a device needs to know of the run that asks.
struct AskingRun {
    // The number of the message that the open line shows; nothing where it shows a fixed prompt.
    std::function<std::optional<std::uint32_t>(std::wstring_view openLine)> messageIn;
    // Told why the command is abandoned, as one sentence in UTF-8.
    std::function<void(const std::string& sentence)> trouble;
};

// The device with answers from the book in place of input. A question without an answer, a refused
// answer and a secret that would have to come from the document are told as trouble and end the
// command (console::CommandAbandoned). Secrets are wiped once they were read. On a terminal answers
// are shown as if they had been typed, but for secrets and what came from elsewhere.
tavro::console::Device Answering(tavro::console::Device device, AnswerBook book, AskingRun run);

// The device with its own input, after whose end a refused answer is told as trouble and ends the
// command as well: asking again would go on for ever.
tavro::console::Device EndingWithInput(tavro::console::Device device, AskingRun run);

}  // namespace tavrohost
