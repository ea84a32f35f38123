#include <utility>

#include "console/console.h"
#include "console/state.h"
#include "platform/crash_dump.h"

namespace tavro::console {
namespace {

// More than any dialogue that ends meets without a word in between.
constexpr int MostUnseenEnds = 1000;

// Without a message text a question shows nothing, so that no write tells whether anybody is there.
// At the end of input nobody answers it either.
void NoteEnd(State& state) {
    if (++state.unseenEnds > MostUnseenEnds) {
        throw OutputLost();
    }
}

// Makes sure that a byte is in the buffer; false at the end of input.
bool Fill(State& state) {
    if (state.position < state.filled) {
        return true;
    }
    if (!state.atEnd) {
        if (!state.device.keysFromTerminal) {
            // A secret may come along that is asked for only later.
            platform::ForbidCrashDumps();
        }
        if (state.device.asked) {
            state.device.asked(std::exchange(state.openLine, {}), state.readsSecret);
        }
        state.position = 0;
        state.filled = state.device.readBytes(state.input.data(), state.input.size());
        state.atEnd = state.filled == 0;
        if (state.atEnd) {
            NoteEnd(state);
        }
    }
    return !state.atEnd;
}

// The bytes up to a line end or the end of input, which stays unread.
std::string ReadUpToLineEnd(State& state) {
    std::string line;
    for (int next = PeekByte(state); next != EndOfInput && next != '\n'; next = PeekByte(state)) {
        line += static_cast<char>(TakeByte(state));
    }
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

}  // namespace

int PeekByte(State& state) {
    if (state.swallowLineFeed && Fill(state)) {
        state.swallowLineFeed = false;
        if (state.input[state.position] == '\n') {
            ++state.position;
        }
    }
    return Fill(state) ? static_cast<unsigned char>(state.input[state.position]) : EndOfInput;
}

int TakeByte(State& state) {
    const int next = PeekByte(state);
    if (next == EndOfInput) {
        state.atEnd = false;
        state.swallowLineFeed = false;
    } else {
        state.input[state.position] = '\0';
        ++state.position;
    }
    return next;
}

void DropUnwanted(State& state) {
    if (!std::exchange(state.dropRestOfLine, false)) {
        return;
    }
    for (int next = TakeByte(state); next != EndOfInput && next != '\n'; next = TakeByte(state)) {
    }
}

std::string ReadLine() {
    RequireOutput();
    State& state = Current();
    DropUnwanted(state);
    std::string line = ReadUpToLineEnd(state);
    TakeByte(state);
    return line;
}

std::string ReadLineLeavingLineEnd() {
    RequireOutput();
    State& state = Current();
    DropUnwanted(state);
    return ReadUpToLineEnd(state);
}

char ReadCharacter() {
    RequireOutput();
    State& state = Current();
    DropUnwanted(state);
    int character = TakeByte(state);
    if (character == '\r' && PeekByte(state) == '\n') {
        character = TakeByte(state);
    }
    return character == EndOfInput ? '\0' : static_cast<char>(character);
}

void SkipCharacter() {
    ReadCharacter();
}

void NoteRefusedAnswer() {
    if (const auto& refused = Current().device.refused) {
        Flush();
        refused();
    }
}

void DropRestOfLine() {
    Current().dropRestOfLine = true;
}

}  // namespace tavro::console
