#include "console/console.h"
#include "console/state.h"
#include "platform/control_characters.h"

namespace tavro::console {
namespace {

void WritePending(State& state) {
    if (state.pendingText.empty() && state.pendingBytes.empty()) {
        return;
    }
    const bool written = state.device.writeText ? state.device.writeText(state.pendingText)
                                                : state.device.writeBytes(state.pendingBytes);
    state.outputIsLost = !written;
    state.pendingText.clear();
    state.pendingBytes.clear();
}

// Bytes that the code page cannot make sense of are widened one by one.
std::wstring Widen(std::string_view bytes, unsigned codePage) {
    if (auto text = platform::DecodeText(bytes, codePage)) {
        return *std::move(text);
    }
    std::wstring text;
    for (const char byte : bytes) {
        text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

// Keeps what the open line shows for a device that is told of questions.
void KeepOpenLine(State& state, std::wstring_view text) {
    if (state.device.asked) {
        state.openLine += text;
    }
}

// Appends text as it stands.
void AppendRaw(State& state, std::wstring_view text) {
    if (state.device.writeText) {
        state.pendingText += text;
    } else {
        state.pendingBytes += platform::EncodeText(text, state.device.codePage);
    }
}

void AppendPending(State& state, std::wstring_view text) {
    KeepOpenLine(state, text);
    if (state.device.isTerminal) {
        AppendRaw(state, platform::MaskControlCharacters(text));
    } else {
        AppendRaw(state, text);
    }
}

void AppendPending(State& state, std::string_view bytes) {
    if (state.device.asked && !state.device.writeText) {
        KeepOpenLine(state, Widen(bytes, state.device.codePage));
    }
    if (state.device.writeText) {
        AppendPending(state, Widen(bytes, state.device.codePage));
    } else if (state.device.isTerminal) {
        state.pendingBytes += platform::MaskControlCharacters(bytes);
    } else {
        state.pendingBytes += bytes;
    }
}

void FinishLine(State& state) {
    PrintControlSequence(state, state.device.lineEnd);
    WritePending(state);
    state.openLine.clear();
}

template <typename View>
void PrintLines(View text) {
    State& state = Current();
    while (!text.empty() && !state.outputIsLost) {
        const std::size_t end = text.find('\n');
        const View line = text.substr(0, end);
        if (!line.empty()) {
            AppendPending(state, line);
        }
        if (end == View::npos) {
            return;
        }
        FinishLine(state);
        text.remove_prefix(end + 1);
    }
}

}  // namespace

void PrintControlSequence(State& state, std::string_view sequence) {
    if (state.outputIsLost) {
        return;
    }
    if (state.device.writeText) {
        state.pendingText.append(sequence.begin(), sequence.end());
    } else {
        state.pendingBytes += sequence;
    }
}

bool OutputIsLost() {
    return Current().outputIsLost;
}

void RequireOutput() {
    Flush();
    if (OutputIsLost()) {
        throw OutputLost();
    }
}

void Print(std::wstring_view text) {
    PrintLines(text);
}

void PrintNarrow(std::string_view bytes) {
    PrintLines(bytes);
}

void EndLine() {
    FinishLine(Current());
}

void PrintLine(std::wstring_view text) {
    Print(text);
    EndLine();
}

void PrintNarrowLine(std::string_view bytes) {
    PrintNarrow(bytes);
    EndLine();
}

void Flush() {
    WritePending(Current());
}

}  // namespace tavro::console
