#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "mgmt/message_id.h"

namespace tavro {

// The pieces that interactive commands are made of: prompts and refusals that are library messages,
// and answers that are compared with a table. Questions that repeat stand in console/question.h.

// Shows a prompt and leaves its line open for the answer.
void ShowPrompt(MessageId prompt, std::string_view prefix = "");

// Shows an indented notice.
void ShowNotice(MessageId notice);

// Shows an empty line and an indented notice.
void ShowSpacedNotice(MessageId notice);

// Shows a prompt and returns the line that is answered, whatever it is.
std::string AskLine(MessageId prompt);

// One answer that a question accepts, and the text that it stands for.
struct Choice {
    std::string_view answer;
    std::string_view meaning;
};

// What an answer that equals one of the choices exactly stands for; nothing for every other.
std::optional<std::string> MeaningOf(std::string_view answer, std::span<const Choice> choices);

}  // namespace tavro
