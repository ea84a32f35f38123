#include "console/secret.h"

#include <optional>

#include "console/console.h"
#include "console/state.h"
#include "console/wipe.h"
#include "platform/crash_dump.h"
#include "platform/keyboard.h"

namespace tavro::console {
namespace {

constexpr int Backspace = 8;

// Where the keys come from: the terminal, or the bytes of the console's input.
class Keys {
  public:
    explicit Keys(State& consoleState) : state_(consoleState) {
        if (state_.device.keysFromTerminal) {
            terminal_.emplace();
        }
    }

    // The next key, or EndOfInput. What had been read of a line before comes first.
    int Next() {
        const bool buffered = state_.position < state_.filled || state_.atEnd;
        if (terminal_ && !buffered) {
            state_.swallowLineFeed = false;
            return terminal_->ReadKey();
        }
        const int key = TakeByte(state_);
        state_.swallowLineFeed = key == '\r';
        return key;
    }

  private:
    State& state_;
    std::optional<platform::KeyByKeyMode> terminal_;
};

bool EndsSecret(int key) {
    return key == EndOfInput || key == '\r' || key == '\n';
}

bool IsBackspace(int key) {
    return key == Backspace || key == platform::AlternateBackspace();
}

// Appends without leaving the characters behind in storage that was given back.
void AppendKey(std::string& text, int key) {
    if (text.size() == text.capacity()) {
        std::string larger;
        larger.reserve(2 * text.capacity());
        larger.append(text);
        WipeSecret(text);
        text.swap(larger);
    }
    text += static_cast<char>(key);
}

void Echo(std::string_view shown) {
    PrintControlSequence(Current(), shown);
    RequireOutput();
}

void ReadKeys(std::string& text) {
    Keys keys(Current());
    for (int key = keys.Next(); !EndsSecret(key); key = keys.Next()) {
        if (!IsBackspace(key)) {
            AppendKey(text, key);
            Echo("*");
        } else if (!text.empty()) {
            text.pop_back();
            Echo("\b \b");
        }
    }
}

// What is read from the device meanwhile belongs to a secret.
class ReadingSecret {
  public:
    ReadingSecret() : state_(Current()) { state_.readsSecret = true; }
    ~ReadingSecret() { state_.readsSecret = false; }
    ReadingSecret(const ReadingSecret&) = delete;
    ReadingSecret& operator=(const ReadingSecret&) = delete;

  private:
    State& state_;
};

}  // namespace

void ReadSecret(std::string& text) {
    constexpr std::size_t UsualRoom = 128;
    platform::ForbidCrashDumps();
    WipeSecret(text);
    text.reserve(UsualRoom);
    try {
        RequireOutput();
        const ReadingSecret reading;
        DropUnwanted(Current());
        ReadKeys(text);
        EndLine();
    } catch (...) {
        WipeSecret(text);
        throw;
    }
}

}  // namespace tavro::console
