#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// What a target answers while an initiator logs in, read from the bytes on the wire: only they tell
// why a login was refused, and whether the target has proved who it is.
namespace tavrolinux {

using WireBytes = std::span<const std::uint8_t>;

// How many bytes the answer at the start of `bytes` has. Nothing when it is no answer to a login,
// or longer than one can be; 0 when more bytes are needed to tell.
std::optional<std::size_t> LoginAnswerSize(WireBytes bytes);

struct LoginAnswer {
    std::uint16_t status = 0;   // the class in the upper byte, its detail in the lower one
    bool provesTarget = false;  // it has the target's own answer to a CHAP challenge
};

// The answer that `bytes` are as a whole.
LoginAnswer ParseLoginAnswer(WireBytes bytes);

}  // namespace tavrolinux
