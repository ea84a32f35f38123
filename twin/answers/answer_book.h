#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/json/json.h"

// The answers to the questions of a command, given beforehand in a JSON document:
//
//     {"format": 1, "answers": [
//         {"message": 29197, "answers": ["y"], "repeat": true},
//         {"prompt": "New Value (500~1500, step: 1) :", "answers": ["600"]},
//         {"message": 29054, "answers": [{"file": "secret.txt"}, {"environment": "CHAP_SECRET"}]}]}
namespace tavrohost {

// What is an answer at most, in bytes.
inline constexpr std::size_t LongestAnswer = 4000;

// Whether the text (UTF-8) can be typed as one line: it holds no control characters and is not too
// long for an answer.
bool IsAnswerLine(std::string_view text);

// One answer and where it comes from. Secrets come from a file or the environment only.
struct Answer {
    enum class Source {
        Text,         // `text` is the answer
        File,         // `text` names a file (UTF-8), whose only line is the answer
        Environment,  // `text` names an environment variable
    };
    Source source = Source::Text;
    std::string text;
};

// What is asked: the number of the message that is the prompt, where a message is, and the prompt's
// text (UTF-8) without blanks at its ends.
struct Question {
    std::optional<std::uint32_t> message;
    std::string prompt;

    // As people are told of it.
    std::string Text() const;
};

// The answers, and which of them were given already.
class AnswerBook {
  public:
    // No answers: whatever is asked has none.
    AnswerBook() = default;
    // Throws tavrolib::ShapeError when the document is none of answers.
    explicit AnswerBook(const tavrolib::Json& document);

    // The answer to the question that is asked now: the n-th to its n-th asking. Throws
    // TroubleError with a sentence that names the question when there is none (any more).
    const Answer& Next(const Question& question);

  private:
    struct Entry {
        std::optional<std::uint32_t> message;
        std::string prompt;  // counts where there is no message
        std::vector<Answer> answers;
        bool lastRepeats = false;
        std::size_t asked = 0;
    };

    static Entry EntryFrom(const tavrolib::Json& json, const tavrolib::Place& place);
    bool Has(const Entry& wanted) const;

    std::vector<Entry> entries_;
};

}  // namespace tavrohost
