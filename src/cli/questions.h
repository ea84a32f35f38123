// The questions that dialogues are made of.
//
// A question shows its prompt, a message of the library, and reads a whole line. The line is
// compared as it was typed. A wrong answer never ends a dialogue: it is refused and asked for again
// without limit, until nobody sees the question any more (console::OutputLost).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "console/console.h"
#include "mgmt/message.h"

namespace tavro {

// What a refused answer is met with before the next one is read.
struct Refusal {
    enum class Kind {
        RetryPrompt,   // the message is a prompt, in the place of the question's own
        Notice,        // the message is an indented notice; then comes the question's prompt again
        SpacedNotice,  // the same with an empty line in front
    };
    Kind kind{};
    MessageId message{};

    static constexpr Refusal RetryPrompt(MessageId prompt) { return {Kind::RetryPrompt, prompt}; }
    static constexpr Refusal Notice(MessageId notice) { return {Kind::Notice, notice}; }
    static constexpr Refusal SpacedNotice(MessageId notice) { return {Kind::SpacedNotice, notice}; }
};

// A question that is asked until its answer is accepted.
struct Question {
    MessageId prompt{};
    Refusal refusal;
    std::string_view prefix = {};  // stands in front of the prompt's text
};

// Shows what a refused answer of the question is met with; the next answer can be read.
void ShowRefusal(const Question& question);

// Asks until `accept` takes the line. It returns either a bool, and the line is the result, or
// something that may hold a value, a std::optional or a pointer; then that value is the result.
template <class Accept>
auto AskUntil(const Question& question, Accept accept) {
    ShowPrompt(question.prompt, question.prefix);
    while (true) {
        std::string line = console::ReadLine();
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
        ShowRefusal(question);
    }
}

// Shows a prompt and returns the line that is answered, whatever it is.
std::string AskLine(MessageId prompt);

// Asks for a number between 0 and `maximum` (`IsNumberInRange`). Returns it as it was typed, with
// leading zeros.
std::string AskNumber(const Question& question, std::int32_t maximum);

// Asks for decimal digits, of which there may be none.
std::string AskDigits(const Question& question);

// Asks for an IPv4 address; a refused one is met with the prompt that all addresses share.
std::string AskIPv4Address(MessageId prompt);

// One answer that a question accepts, and the text that it stands for.
struct Choice {
    std::string_view answer;
    std::string_view meaning;
};

// What an answer that equals one of the choices exactly stands for; nothing for every other.
std::optional<std::string> MeaningOf(std::string_view answer, std::span<const Choice> choices);

// Asks for one of the choices and returns what it stands for.
std::string AskChoice(const Question& question, std::span<const Choice> choices);

// True for "y" or "Y", false for "n" or "N", nothing for any other answer.
std::optional<bool> YesOrNo(const std::string& answer);

// Asks until the answer is yes or no, as `YesOrNo` has it.
bool AskDecision(const Question& question);

// What an answer that was already read decides. While it is neither yes nor no, asks for one of
// them and reads another line.
bool AskYesNo(const std::string& answer);

// What a switch is set to: "Enabled" or "Disabled".
const char* SwitchText(bool isOn);

// Asks whether a switch is on, yes or no, and returns its text.
std::string AskSwitch(const Question& question);

// Asks for a secret (console::ReadSecret) until `accept` takes it. `secret` is the caller's to
// wipe; what was refused is wiped.
void AskSecret(std::string& secret, const Question& question, bool (*accept)(const std::string&));

// Asks for a secret twice, by `prompt` and by `confirmation`, and from the first again without a
// word while the two differ. `secret` is the caller's to wipe.
void AskConfirmedSecret(std::string& secret, MessageId prompt, MessageId confirmation);

}  // namespace tavro
