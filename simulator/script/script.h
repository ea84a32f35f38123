#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "library/calls/call.h"
#include "library/calls/outcome.h"

namespace tavrosim {

using tavrolib::Call;

struct Answer;

// The answers that a script file gives in the model's stead.
class Script {
  public:
    // No answers, messages in words, the model answers.
    Script();
    ~Script();
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;
    Script(Script&&) noexcept;
    Script& operator=(Script&&) noexcept;

    // Reads a script's text. Throws ShapeError that names the place of what is wrong.
    static Script FromText(std::string_view text);

    bool MessagesAreNumbers() const { return messagesAreNumbers_; }
    bool HasModel() const { return hasModel_; }

    // Answers the call with the first answer that matches and is not used up, which counts as used
    // then: fills its result record and sets its completion code. Nothing when there is none.
    // Throws ShapeError when the answer does not fit the call's records.
    std::optional<tavrolib::Outcome> Take(const Call& call);

  private:
    bool messagesAreNumbers_ = false;
    bool hasModel_ = true;
    std::vector<Answer> answers_;
};

}  // namespace tavrosim
