// What the console holds between two calls; for the sources of this folder only.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "console/redirect.h"
#include "platform/wipe.h"

namespace tavro::console {

struct State {
    explicit State(Device consoleDevice) : device(std::move(consoleDevice)) {}
    // Input that nobody read may hold secrets.
    ~State() { platform::WipeBytes(input.data(), input.size()); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    Device device;

    // What was printed and not yet written, a line or a block of them: as text where the device
    // takes text, as bytes otherwise.
    std::wstring pendingText;
    std::string pendingBytes;
    // What the line shows that was printed last and not ended, where the device is told of
    // questions; empty again once it was answered.
    std::wstring openLine;
    // A write has failed; nothing is pending any more, and nothing is written.
    bool outputIsLost = false;

    // Bytes read from the device; those from `position` on have not been used yet.
    std::array<char, 4096> input{};
    std::size_t position = 0;
    std::size_t filled = 0;
    // The device reported the end of input and nobody has met it yet.
    bool atEnd = false;
    // How often the end of input was met since something was written.
    int unseenEnds = 0;
    // The last key was a CR: an LF right after it belongs to it.
    bool swallowLineFeed = false;
    // The keys of a secret are being read.
    bool readsSecret = false;
    // What is left of the line in front is not wanted; the next reading function drops it.
    bool dropRestOfLine = false;
};

inline constexpr int EndOfInput = -1;

// The state in use: that of the process's streams unless there is a Redirect.
State& Current();

// Makes another state the one in use, null for that of the process's streams; returns the one
// before.
State* Exchange(State* state);

// Prints ASCII characters of the console's own that may steer a terminal.
void PrintControlSequence(State& state, std::string_view sequence);

// The next byte of input, which stays unread, or EndOfInput. Waits for it.
int PeekByte(State& state);

// Drops what DropRestOfLine asked for. Every reading function begins with it.
void DropUnwanted(State& state);

// Takes the next byte off the input and wipes it from the buffer; or takes the EndOfInput.
int TakeByte(State& state);

}  // namespace tavro::console
